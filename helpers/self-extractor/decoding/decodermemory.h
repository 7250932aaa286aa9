// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "7zTypes.h"

namespace sfx {

// The process heap, as 7-Zip's decoders need it.
extern const ISzAlloc decoderMemory;

} // namespace sfx
