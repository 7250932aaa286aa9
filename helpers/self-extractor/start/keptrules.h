// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/start/keptrecord.h"

namespace sfx {

// Whether the program finds its files in a kept folder as well as in a private one: paths over 259
// units are a problem for many programs. The sizes are in UTF-16 units; the folders are those of the
// application, and `longest` is the archive's longest path.
bool fitsAsWell(std::size_t keptFolder, std::size_t privateFolder, std::size_t longest);

// Whether the kept folder's contents must be compared, beyond names, sizes and times: they have been
// written, but maybe not to the disk, before the system was started. `started`: when that was; it may
// differ within one run of the system if the clock is set, which costs one comparison.
bool mustCompareContents(const KeptRecord &record, std::uint64_t started);

// Whether a start can go on with a private folder if the kept one ended with this status.
bool canGoOnPrivately(Status status);

// What to do with a kept folder that nobody uses.
enum class KeptFate {
    Stay,
    StayFromNow, // the last use is in the future: the clock was set back
    Go
};

// Times in 100 ns since 1601.
KeptFate fateOf(const KeptRecord &record, std::uint64_t lastUse, std::uint64_t now);

// Whether `other` is an older version of this record's product.
bool isOlderVersion(const KeptRecord &record, const KeptRecord &other);

} // namespace sfx
