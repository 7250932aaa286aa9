// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/decoding/codergraph.h"
#include "helpers/self-extractor/decoding/stream.h"

namespace sfx {

// Builds the chain of streams that decodes one solid block. If `readsAhead`, its most expensive
// decoder runs in another thread. Unsupported: this module does not have a method or cannot connect
// the coders in this way.
Status openDecoderChain(const CoderGraph &graph, bool readsAhead, Owned<Stream> &result);

} // namespace sfx
