// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/bytesource.h"
#include "helpers/self-extractor/base/status.h"

namespace sfx {

/// Finds where the executable image ends in its file: behind the last byte that a section has on
/// disk, by the section table (Microsoft PE/COFF specification, "Section Table"). What was appended
/// to the image begins there, whatever a resource editor has done to the image meanwhile.
Status findImageEnd(ByteSource &source, std::uint64_t &end);

} // namespace sfx
