// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/fast-archiver/sourcefile.h"
#include "helpers/pe/bytes.h"

namespace fast {

// How many bytes at the beginning of a file contentOf() looks at.
constexpr std::size_t contentBytes = 4096;

// Tells from a file's first bytes what it contains: PE files of Windows, and ELF files.
Content contentOf(pe::ByteView start);

} // namespace fast
