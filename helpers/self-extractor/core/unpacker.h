// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/core/pathset.h"
#include "helpers/self-extractor/core/unpackthreads.h"

namespace sfx {

/// Looks at every entry before anything is written: names, kinds, collisions, and that `program` is
/// a file at the top level. `totalBytes` becomes the size of all files together.
Status checkContents(Archive &archive, const Text &program, UpperCase upperCase,
                     std::uint64_t &totalBytes);

/// Unpacks everything and checks each file's CRC. The files come in no particular order if there
/// are several threads. Damaged: a CRC is wrong or missing, or the data ends too early.
Status unpack(Archive &archive, UnpackSink &sink, std::uint64_t totalBytes,
              const UnpackLimits &limits = UnpackLimits());

} // namespace sfx
