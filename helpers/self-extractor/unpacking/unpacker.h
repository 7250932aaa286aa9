// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/unpacking/unpackthreads.h"

namespace sfx {

// Unpacks everything that is not skipped and checks each file's CRC. `totalBytes` is the size of these
// files together. With several threads the order of files is undefined. Damaged: a CRC is wrong or missing, or the data ends too early.
Status unpack(Archive &archive, UnpackSink &sink, std::uint64_t totalBytes,
              const UnpackLimits &limits = UnpackLimits());

} // namespace sfx
