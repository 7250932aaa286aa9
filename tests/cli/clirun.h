// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/cli/testarchive.h"
#include "tests/fakes/privatetemp.h"
#include "tests/support/builtfile.h"
#include "tests/support/folderstate.h"
#include "tests/support/testfiles.h"

#include <QProcess>
#include <QStringList>

// One run of a terminal program. The one with fake helpers (fakedcli.cpp) takes them from the
// temporary directory of the test.
struct CliResult
{
    int exitStatus = -1; // the signal's number if a signal ended the program
    bool ended = false;  // true if the program ended by itself, not by a signal
    QString output;
    QString errors;

    QStringList outputLines() const { return output.split('\n', Qt::SkipEmptyParts); }
};

// A folder with one program, an empty folder beside it, and helpers that work.
class CliSurroundings
{
public:
    CliSurroundings()
    {
        const QDir dir(root.path());
        if (!dir.mkpath("source") || !dir.mkpath("output")) {
            qFatal("the folders could not be made");
        }
        write("source/my.tool.exe", "program without an icon");
        write("source/data/文件.txt", "data");
        temp.plantModule("module");
        write("archive.7z", archiveOf(3000000));
        useArchiver("print  40%\n");
        temp.plantEditor("");
    }

    // The archiver runs `script` first. Then it makes a whole archive.
    void useArchiver(const QByteArray &script) { useArchiver(script, "archive.7z"); }
    // The same, but the archive is the file `name`.
    void useArchiver(const QByteArray &script, const QString &name)
    {
        temp.plantArchiver(script + "\ncopy " + path(name).toUtf8() + " @3\n");
    }

    QString path(const QString &name) const { return root.filePath(name); }
    QString product() const { return path("output/my.exe"); }

    void write(const QString &name, const QByteArray &content) const
    {
        if (!QDir().mkpath(QFileInfo(path(name)).path()) || !writeFile(path(name), content)) {
            qFatal("a file could not be made");
        }
    }

    QByteArray read(const QString &name) const { return readFile(path(name)); }

    QStringList sourceState() const { return folderState(path("source")); }

    QStringList namesIn(const QString &folder) const
    {
        return QDir(path(folder))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

    CliResult run(const QStringList &arguments) const
    {
        QProcess process;
        process.start(builtFile(KESTRELPACK_CLI), QStringList{"--language", "en"} + arguments);
        return resultOf(process);
    }

    static CliResult resultOf(QProcess &process)
    {
        if (!process.waitForFinished(300000)) {
            process.kill();
            return {};
        }
        return {process.exitCode(), process.exitStatus() == QProcess::NormalExit,
                QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    // The usual arguments of a run that succeeds.
    QStringList arguments() const { return {"-o", path("output"), path("source")}; }

    QTemporaryDir root; // made before the private temporary directory, so it is not inside that
    PrivateTemp temp;
};
