// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/helpers/self-extractor/sfxtest.h"
#include "tests/helpers/self-extractor/zstdframes.h"

// Makes 7z archives whose solid blocks are packed with Zstandard.
struct ZstdPacking
{
    qsizetype blockSize = 1 << 30; // a solid block ends with the file that reaches this size
    qsizetype frameSize = 1 << 30; // the largest content of a frame
    bool isFiltered = false;       // whether the filter for x86 programs (BCJ) is applied before
    bool hasSkippable = false;     // whether a skippable frame comes before the others
    zstdframes::Options frames = {};
};

QByteArray packZstd(const Tree &tree, const ZstdPacking &packing = {});
