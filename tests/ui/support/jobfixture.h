// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/waiting.h"
#include "tests/ui/support/windowfixture.h"

// The window with fake helper programs. Jobs run, and a test can stop them at the archiver.
class JobFixture : public WindowFixture
{
public:
    JobFixture()
    {
        temp.plantModule("module");
        temp.plantEditor("");
        useArchiver("print  40%\n");
    }

    // The archiver runs `script` first. Then it makes the archive and records its arguments.
    void useArchiver(const QByteArray &script)
    {
        temp.plantArchiver("record " + temp.filePath("arguments").toUtf8() + "\n" + script
                           + "write @3 2000\n");
    }

    // The archiver waits until release().
    void holdArchiver() { useArchiver("wait " + temp.filePath("go").toUtf8() + "\nprint  40%\n"); }

    // Opens a window whose job runs and does not end before release().
    void startAndHold()
    {
        holdArchiver();
        open();
        fillIn();
        click("startButton");
        if (!QTest::qWaitFor([this] { return isArchiverRunning(); }, patience)) {
            qFatal("the job does not start");
        }
    }

    void release()
    {
        if (!writeFile(temp.filePath("go"), "")) {
            qFatal("the archiver cannot be released");
        }
    }

    bool isArchiverRunning() const { return QFile::exists(temp.filePath("arguments")); }

    QStringList archiverArguments() const
    {
        return QString::fromUtf8(readFile(temp.filePath("arguments"))).trimmed().split('\n');
    }

    bool isLocked(const char *control) const { return !find<QWidget>(control)->isEnabled(); }
    bool isBusy() const { return isLocked("startButton"); }

    // The window's temporary directory, the only one in the private temporary folder.
    QString windowDirectory() const
    {
        return temp.filePath(QDir(temp.path()).entryList({"Kestrelpack_*"}, QDir::Dirs).value(0));
    }
};
