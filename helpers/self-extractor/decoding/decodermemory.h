// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "7zTypes.h"

namespace sfx {

/// The process heap in the form that 7-Zip's decoders take.
extern const ISzAlloc decoderMemory;

} // namespace sfx
