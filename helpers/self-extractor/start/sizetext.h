// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"

#include <cstdint>

namespace sfx {

/// Appends a number of bytes as Windows shows it to people, "13 MB" or "4.2 GB", rounded up: who
/// frees that much has freed enough. Never less than "1 MB". False: no memory.
[[nodiscard]] bool appendSize(Text &text, std::uint64_t bytes);

} // namespace sfx
