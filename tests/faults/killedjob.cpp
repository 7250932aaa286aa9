// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// A job that stops at a moment, says so and waits until it is killed: killedjob MOMENT WHICH SOURCE
// ARCHIVE OUTPUT. MOMENT is the beginning of "log TEXT", of "progress NUMBER", or of a name in
// HaltingPlatform. WHICH counts from 1.

#include "packaging/worker.h"
#include "platform/iconsource.h"
#include "platform/nativeplatform.h"
#include "tests/support/testicons.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QThread>

#include <cstdio>

namespace {

class Halt
{
public:
    Halt(const QString &moment, int which) : m_moment(moment), m_left(which) {}

    void pass(const QString &moment)
    {
        if (!moment.startsWith(m_moment) || --m_left != 0) {
            return;
        }
        std::puts("here");
        std::fflush(stdout);
        for (;;) {
            QThread::sleep(60);
        }
    }

private:
    QString m_moment;
    int m_left;
};

// Pauses take no time. Helpers are started as in the real programs.
class HaltingPlatform final : public NativePlatform, public IconSource
{
public:
    explicit HaltingPlatform(Halt &halt) : m_halt(halt) {}

    ExtractedIcon extractIcon(const QString &) override
    {
        m_halt.pass("extract");
        return extractedIcon(32, 32);
    }
    QString reasonNotToUse(const QString &path) override
    {
        m_halt.pass("use " + QFileInfo(path).fileName());
        return {};
    }
    void startDetached(const QString &) override { m_halt.pass("detached"); }
    void notifyAssociationsChanged() override { m_halt.pass("shell told"); }
    void pause(std::chrono::milliseconds) override { m_halt.pass("pause"); }

private:
    Halt &m_halt;
};

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 6) {
        return 99;
    }
    Halt halt(arguments[1], arguments[2].toInt());
    HaltingPlatform platform(halt);
    setPlatform(&platform);
    setIconSource(&platform);
    Worker worker;
    QObject::connect(&worker, &Worker::logMessage, &worker,
                     [&halt](const QString &text) { halt.pass("log " + text); });
    QObject::connect(&worker, &Worker::progressChanged, &worker,
                     [&halt](int value) { halt.pass(QStringLiteral("progress %1").arg(value)); });
    worker.createPortableApp(arguments[3], arguments[4], arguments[5], "my.tool.exe", {}, "5",
                             "LZMA", "16M");
    return 0;
}
