// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/helpers/pe/petest.h"
#include "tests/support/builtfile.h"
#include "tests/support/testfiles.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

// How a run of the resource editor ended.
struct EditorRun
{
    int status = -1;
    QByteArray errors;
};

// Starts the resource editor as the packaging engine does.
inline EditorRun startEditor(const QStringList &arguments)
{
    QProcess process;
    process.start(builtFile(KESTRELPACK_RESOURCE_EDITOR), arguments);
    if (!process.waitForFinished(300000) || process.exitStatus() != QProcess::NormalExit) {
        return {-1, "did not end by itself"};
    }
    return {process.exitCode(), process.readAllStandardError()};
}

inline QStringList deleteArguments(const QString &program)
{
    return {"-open",  program, "-save",      program, "-action",
            "delete", "-mask", "ICONGROUP,", "-log",  "NUL"};
}

inline QStringList addArguments(const QString &program, const QString &icon)
{
    return {"-open",        program,     "-save", program, "-action",
            "addoverwrite", "-resource", icon,    "-mask", "ICONGROUP,MAINICON,",
            "-log",         "NUL"};
}

// A program and an icon for the editor, in a temporary folder.
struct EditorFiles
{
    explicit EditorFiles(const QByteArray &program, const QList<int> &iconSizes = {16, 32, 256})
    {
        if (!writeFile(this->program(), program)
            || !writeFile(icon(), petest::makeIcon(iconSizes))) {
            qFatal("the files could not be made");
        }
    }
    QString program() const { return dir.filePath("程序 with blanks.exe"); }
    QString icon() const { return dir.filePath("icon.ico"); }
    QByteArray content() const { return readFile(program()); }
    EditorRun remove() const { return startEditor(deleteArguments(program())); }
    EditorRun add() const { return startEditor(addArguments(program(), icon())); }

    QTemporaryDir dir;
};

// All resources except icon images and icon groups.
inline petest::Resources otherResources(const QByteArray &program)
{
    petest::Resources others = petest::lookAt(program).resources;
    others.removeIf([](const petest::Resources::iterator &resource) {
        return resource.key().startsWith("3/") || resource.key().startsWith("14/");
    });
    return others;
}

inline QStringList iconGroups(const QByteArray &program)
{
    QStringList groups = petest::lookAt(program).resources.keys();
    groups.removeIf([](const QString &key) { return !key.startsWith("14/"); });
    return groups;
}
