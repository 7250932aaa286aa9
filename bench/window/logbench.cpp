// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "bench/window/logbench.h"

#include "bench/window/lateness.h"
#include "packaging/worker.h"
#include "ui/mainwindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTextDocument>
#include <QTextEdit>
#include <QThread>

#include <cstdio>

namespace {

QString lineOf(int number)
{
    return QStringLiteral("正在压缩 第 %1 个文件: program/data/文件-%1.dll").arg(number);
}

QString allLines(int lines)
{
    QStringList all;
    for (int number = 0; number < lines; ++number) {
        all.append(lineOf(number));
    }
    return all.join(u'\n');
}

double seconds(const QElapsedTimer &clock)
{
    return static_cast<double>(clock.nsecsElapsed()) / 1e9;
}

} // namespace

int floodBarePane(int lines)
{
    // Makes the bare pane as large as the window's pane, so that lines wrap at the same places.
    MainWindow window;
    window.show();
    QApplication::processEvents();
    QTextEdit pane;
    pane.setReadOnly(true);
    pane.resize(window.findChild<QTextEdit *>("logTextEdit")->size());
    pane.show();
    QApplication::processEvents();

    QElapsedTimer clock;
    clock.start();
    for (int number = 0; number < lines; ++number) {
        pane.append(lineOf(number));
    }
    QApplication::processEvents();
    std::printf("%.3f\n", seconds(clock));
    return 0;
}

int floodWindow(int lines)
{
    MainWindow window;
    window.show();
    QApplication::processEvents();
    const QTextDocument *document = window.findChild<QTextEdit *>("logTextEdit")->document();

    QThread thread;
    Worker worker;
    worker.moveToThread(&thread);
    QObject::connect(&worker, &Worker::logMessage, &window, &MainWindow::onWorkerLog);
    thread.start();

    Lateness lateness;
    QElapsedTimer clock;
    clock.start();
    QMetaObject::invokeMethod(&worker, [&worker, lines] {
        for (int number = 0; number < lines; ++number) {
            emit worker.logMessage(lineOf(number));
        }
    });
    while (document->blockCount() < lines) {
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    const double taken = seconds(clock);
    const qint64 late = lateness.worst();
    thread.quit();
    thread.wait();

    if (document->toPlainText() != allLines(lines)) {
        std::fputs("the pane does not show what was emitted\n", stderr);
        return 1;
    }
    std::printf("%.3f %lld\n", taken, static_cast<long long>(late));
    return 0;
}
