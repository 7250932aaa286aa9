// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "app/application.h"

#include "app/startguard.h"
#include "app/stylesheet.h"
#include "ui/mainwindow.h"

#include <QApplication>

#include <optional>

int runApplication(int &argc, char **argv)
{
    std::optional<StartGuard> guard(std::in_place);
    QApplication application(argc, argv);
    guard.reset();

    if (!loadStyleSheet(application)) {
        warnOfMissingStyleSheet();
    }
    MainWindow window;
    window.show();
    return QApplication::exec();
}
