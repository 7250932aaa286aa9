// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/decoding/codergraph.h"
#include "helpers/self-extractor/decoding/windowstream.h"

namespace sfx {

// The method Zstandard, in a coder graph. Only the full module has it: there, zstdmethod.cpp is
// linked, and in the small one zstdmethod_none.cpp.

// The size of the window that the coder's frames need, in bytes; UINT64_MAX if this module does not
// decode them. If another coder makes them, or if their beginning cannot be read, the window is as
// large as allowed.
std::uint64_t zstdWindow(const CoderGraph &graph, unsigned coder);

// Makes the coder's decoder.
Status openZstd(const CoderGraph &graph, unsigned coder, Owned<Stream> input,
                Owned<WindowStream> &decoder);

} // namespace sfx
