// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/decoding/zstdmethod.h"

namespace sfx {

std::uint64_t zstdWindow(const CoderGraph &, unsigned)
{
    return UINT64_MAX;
}

Status openZstd(const CoderGraph &, unsigned, Owned<Stream>, Owned<WindowStream> &)
{
    return Status::Unsupported;
}

} // namespace sfx
