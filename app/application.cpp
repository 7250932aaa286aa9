// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "app/application.h"

#include "app/startguard.h"
#include "app/stylesheet.h"
#include "ui/mainwindow.h"

#include <QApplication>
#include <QMessageBox>

#include <optional>

namespace {

void warnOfPlainLook()
{
    QMessageBox::warning(nullptr, QStringLiteral("警告"),
                         QStringLiteral("无法加载样式表，将使用默认外观。\n"
                                        "这可能会影响应用程序的外观，但功能不受影响。"),
                         QMessageBox::Ok);
}

} // namespace

int runApplication(int &argc, char **argv)
{
    std::optional<StartGuard> guard(std::in_place);
    QApplication application(argc, argv);
    guard.reset();

    if (!loadStyleSheet(application)) {
        warnOfPlainLook();
    }
    MainWindow window;
    window.show();
    return QApplication::exec();
}
