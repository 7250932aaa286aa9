// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

class QIODevice;

// Whether `archive` is a 7z archive that its archiver wrote to the end. The start header is written last: it
// says where the header lies, so both check sums are right only in an archive that is whole. The packed
// files themselves are not read. `archive` is open, and its size is known.
bool isWholeArchive(QIODevice &archive);

// Whether the last bytes of `output` are all those of `archive`. Both are open, and their sizes are known.
bool endsWithArchive(QIODevice &output, QIODevice &archive);
