// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// The program, driven as by a person: this closes each box, and then the window with its close
// button. It writes what it sees to standard output, one line for each thing. DRIVEN_BUNDLE
// ("missing" or "empty") damages the bundle. With DRIVEN_HANDLER, it installs a message handler
// before the start and writes the messages that the handler receives.

#include "app/application.h"
#include "tests/app/bundleswap.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLoggingCategory>
#include <QMainWindow>
#include <QMessageBox>
#include <QTimer>

#include <cstdio>

namespace {

void say(const QString &text)
{
    std::printf("%s\n", qUtf8Printable(QString(text).replace('\n', "\\n")));
    std::fflush(stdout);
}

// Writes level, category and text of a message. Leaves out Qt's own messages.
void sayMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    const QString category = QString::fromUtf8(context.category);
    if (!category.startsWith("qt.") && !text.startsWith("This plugin does not support")) {
        const QStringList levels{"debug", "warning", "critical", "fatal", "info"};
        say(QStringLiteral("%1 %2: %3").arg(levels[type], category, text));
    }
}

QMainWindow *visibleWindow()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *window = qobject_cast<QMainWindow *>(widget); window && window->isVisible()) {
            return window;
        }
    }
    return nullptr;
}

void closeBox(QMessageBox &box)
{
    say(QStringLiteral("box %1 | %2 | buttons %3 | %4")
            .arg(box.windowTitle(), box.text())
            .arg(box.standardButtons().toInt(), 0, 16)
            .arg(visibleWindow() ? "over the window" : "alone"));
    auto *yes = box.button(QMessageBox::Yes);
    (yes ? yes : box.button(QMessageBox::Ok))->click();
}

void lookAround()
{
    static bool closing = false;
    if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
        closeBox(*box);
    } else if (QMainWindow *window = visibleWindow(); window && !closing) {
        closing = true;
        say(qApp->styleSheet().isEmpty() ? "window, plain" : "window, styled");
        QTimer::singleShot(0, window, [window] {
            window->findChild<QAbstractButton *>("closeButton")->click();
        });
    }
}

void watch()
{
    auto *timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer,
                     [] { QTimer::singleShot(0, qApp, lookAround); });
    timer->start(5);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(watch)

Q_LOGGING_CATEGORY(driven, "driven")

void speakDuringTheStart()
{
    qCWarning(driven) << "the application is being made";
}

Q_COREAPP_STARTUP_FUNCTION(speakDuringTheStart)

int main(int argc, char *argv[])
{
    const QByteArray bundle = qgetenv("DRIVEN_BUNDLE");
    if (bundle == "missing") {
        removeBundle();
    } else if (bundle == "empty" && !useEmptySheet()) {
        return 99;
    }
    if (qEnvironmentVariableIsSet("DRIVEN_HANDLER")) {
        qInstallMessageHandler(sayMessage);
    }
    return runApplication(argc, argv);
}
