// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "bench/window/jobbench.h"

#include "bench/window/lateness.h"
#include "ui/mainwindow.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

#include <cstdio>

int packThroughWindow(const QString &folder, const QString &mainExe, const QString &outputDir)
{
    MainWindow window;
    window.findChild<QLineEdit *>("folderLineEdit")->setText(folder);
    window.findChild<QLineEdit *>("outputLineEdit")->setText(outputDir);
    window.findChild<QComboBox *>("mainExeComboBox")->addItem(mainExe);
    auto *start = window.findChild<QPushButton *>("startButton");
    window.show();
    QApplication::processEvents();

    Lateness lateness;
    QElapsedTimer clock;
    clock.start();
    bool succeeded = false;
    // The message box after a success runs a nested event loop inside the one below.
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&succeeded] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            succeeded = box->icon() == QMessageBox::Information;
            box->accept();
        }
    });
    poll.start(20);
    start->click();
    while (!start->isEnabled() || QApplication::activeModalWidget() != nullptr) {
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    std::printf("%.1f %lld\n", static_cast<double>(clock.elapsed()) / 1e3,
                static_cast<long long>(lateness.worst()));
    return succeeded ? 0 : 1;
}
