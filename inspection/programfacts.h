// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/file.h"

#include <QList>
#include <QString>

#include <optional>
#include <utility>

// What the program image at the beginning of a file says about itself.
struct ProgramFacts
{
    QString machine;   // "x64", "x86", "ARM64", "ARM", or a number like 0x1c0
    QString subsystem; // "windows", "console", or a number
    // The file contains a signature. Whether it is valid is not checked.
    bool isSigned = false;
    // Code and data are those of this program's own self-extractor module; the subsystem, icons,
    // version information and other resources may differ.
    bool hasOwnModule = false;
    // The strings of the version resource, in their order: name and value.
    QList<std::pair<QString, QString>> identity;
};

// Returns nothing if `file` is not a Windows program.
std::optional<ProgramFacts> programFactsOf(const pe::File &file);
