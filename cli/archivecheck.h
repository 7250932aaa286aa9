// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

class QIODevice;

// Returns true if the archiver has written the 7z archive `archive` completely. An archiver writes
// the start header last, and it contains the position of the header. So the check sums of both are
// right only in a complete archive. The packed files themselves are not read. `archive` must be
// open, with a known size.
bool isWholeArchive(QIODevice &archive);

// Returns true if `output` ends with all bytes of `archive`. Both must be open, with known sizes.
bool endsWithArchive(QIODevice &output, QIODevice &archive);
