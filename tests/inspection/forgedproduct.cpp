// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/inspection/forgedproduct.h"

#include "tests/helpers/self-extractor/preparedmodule.h"

#include <QFile>

QList<forge::File> forgedFiles()
{
    return {{"main.exe", "the program"},
            {"fixed.ini", "read-only", false, false, 0x21},
            {"data", {}, true},
            {"data/文件.txt", "text in a folder"}};
}

ForgedProduct::ForgedProduct()
    : block(";!@Install@!UTF-8!\nTitle=\"A title\"\nRunProgram=\"main.exe\"\n"
            "InstallPath=\"%%T\\folder\"\n;!@InstallEnd@!\n")
{
    QFile bundled(":/resources/7zS2.sfx");
    if (!bundled.open(QIODevice::ReadOnly)) {
        qFatal("the bundle has no module");
    }
    module = bundled.readAll();
    setFiles(forgedFiles());
}

void ForgedProduct::setFiles(const QList<forge::File> &files)
{
    archive = forge::archiveOf(forge::ArchivePlan(files));
}

void ForgedProduct::setSettings(const QByteArray &settings, bool forConsole)
{
    module = preparedModule(module, settings, forConsole);
    if (module.isEmpty()) {
        qFatal("the module cannot be edited");
    }
}
