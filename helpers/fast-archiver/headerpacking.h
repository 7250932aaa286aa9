// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/fast-archiver/archiveheader.h"

#include <optional>

namespace fast {

// Packs a header with LZMA, which all 7z readers know: so every one of them can list the archive.
// Returns nothing if the header would not become smaller.
std::optional<PackedHeader> packHeader(pe::ByteView header);

} // namespace fast
