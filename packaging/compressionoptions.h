// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// These functions turn an index in a list of compression options into the word for the archiver. An
// index outside the list, such as -1 for "nothing selected", gives the list's default.

// "0", "1", "3", "5", "7" or "9" for the six levels from storing to ultra; default "5".
QString compressionLevelText(int index);

// "LZMA" or "LZMA2"; default "LZMA".
QString compressionMethodText(int index);

// "64K", "1M", "16M", "32M" or "64M"; default "16M".
QString dictionarySizeText(int index);
