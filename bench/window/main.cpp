// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// The benchmarks of the window. Each one can measure a plain Qt widget for comparison:
//   benchwindow start-bare | start-text | start
//                                         starts a plain window of the same size, one with a
//                                         line of Chinese text, or our window
//   benchwindow log-bare N | log N        a flood of N lines in a plain pane, or in our window
//   benchwindow job FOLDER MAIN OUTPUT    a job in our window

#include "app/stylesheet.h"
#include "bench/window/jobbench.h"
#include "bench/window/logbench.h"
#include "bench/window/startbench.h"
#include "ui/mainwindow.h"

#include <QApplication>
#include <QLabel>
#include <QMainWindow>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString what = arguments.value(1);
    if (what == "start-bare") {
        QMainWindow window;
        window.resize(436, 536);
        return showAndMeasure(window);
    }
    if (what == "start-text") {
        QMainWindow window;
        window.resize(436, 536);
        window.setCentralWidget(new QLabel(QStringLiteral("源文件夹")));
        return showAndMeasure(window);
    }
    if (what == "log-bare") {
        return floodBarePane(arguments.value(2).toInt());
    }
    if (!loadStyleSheet(application)) {
        return 1;
    }
    if (what == "start") {
        MainWindow window;
        return showAndMeasure(window);
    }
    if (what == "log") {
        return floodWindow(arguments.value(2).toInt());
    }
    if (what == "job" && arguments.size() == 5) {
        return packThroughWindow(arguments[2], arguments[3], arguments[4]);
    }
    return 2;
}
