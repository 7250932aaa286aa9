// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/bytesource.h"
#include "helpers/self-extractor/base/status.h"

namespace sfx {

// Finds the end of the executable image in its file: the end of the last section on disk, by the
// section table (Microsoft PE/COFF specification, "Section Table"). Appended data begins there,
// even if a resource editor has changed the image.
Status findImageEnd(ByteSource &source, std::uint64_t &end);

} // namespace sfx
