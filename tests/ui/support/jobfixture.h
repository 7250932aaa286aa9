// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/waiting.h"
#include "tests/ui/support/windowfixture.h"

// The window with fake helper programs, so that jobs run, and can be held at the archiver.
class JobFixture : public WindowFixture
{
public:
    JobFixture()
    {
        temp.plantModule("module");
        temp.plantEditor("");
        useArchiver("print  40%\n");
    }

    // `script` runs first; then the archive is made, and what the archiver was called with is noted.
    void useArchiver(const QByteArray &script)
    {
        temp.plantArchiver("record " + temp.filePath("arguments").toUtf8() + "\n" + script
                           + "write @3 2000\n");
    }

    // The archiver waits until release().
    void holdArchiver() { useArchiver("wait " + temp.filePath("go").toUtf8() + "\nprint  40%\n"); }

    // A window whose job runs and does not end before release().
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

    // The window's temporary directory, the only one in the private place.
    QString windowDirectory() const
    {
        return temp.filePath(QDir(temp.path()).entryList({"Kestrelpack_*"}, QDir::Dirs).value(0));
    }
};
