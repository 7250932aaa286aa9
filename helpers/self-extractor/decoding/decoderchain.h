// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/decoding/codergraph.h"
#include "helpers/self-extractor/decoding/stream.h"

namespace sfx {

/// Builds the stages that decode one solid block. `readsAhead`: the costliest stage runs in another
/// thread. Unsupported: a method or a wiring that this module does not have.
Status openDecoderChain(const CoderGraph &graph, bool readsAhead, Owned<Stream> &result);

} // namespace sfx
