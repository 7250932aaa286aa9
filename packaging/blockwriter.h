// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// Returns the configuration block of the self-extractor: ten lines, each ended by a line feed, with
// the title, the folder to unpack into and the program to run. It is written between module and
// archive, as UTF-8 without a byte-order mark.
//
// `baseName` is the produced program's name without its extension, `mainExeName` the file name of
// the program to run. Nothing is escaped: a Windows file name cannot contain a quotation mark.
QString configurationBlock(const QString &baseName, const QString &mainExeName);
