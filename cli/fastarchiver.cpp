// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/fastarchiver.h"

#include "cli/language.h"
#include "platform/bundledtool.h"

#include <QDir>
#include <QFile>

std::optional<Refusal> provideFastArchiver(const QString &directory)
{
    const QString path = QDir(directory).filePath("7zr.exe");
    const QString archiver = QStringLiteral(":/fast-start/7zr.exe");
    if (!QFile::exists(path) && !QFile::exists(archiver)) {
        return Refusal{
            text("this build of kestrelpack-cli has no archiver for --profile fast-start")};
    }
    if (!provideBundledTool(archiver, path)) {
        return Refusal{text("the archiver for --profile fast-start cannot be written to %1")
                           .arg(QDir::toNativeSeparators(path))};
    }
    return std::nullopt;
}
