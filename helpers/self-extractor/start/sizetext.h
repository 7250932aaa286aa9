// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"

#include <cstdint>

namespace sfx {

// Appends a number of bytes as Windows shows it, "13 MB" or "4.2 GB", rounded up, so that a user
// who frees that much has freed enough. Never less than "1 MB". Returns false if there is not
// enough memory.
[[nodiscard]] bool appendSize(Text &text, std::uint64_t bytes);

} // namespace sfx
