// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"

namespace sfx {

// Appends a text of the system, with `name` in place of each "%1": many of these texts begin
// with the name of the file concerned. Spaces and line ends at the end of the text are left out.
// Returns false if there is not enough memory.
[[nodiscard]] bool appendSystemText(Text &text, const char16_t *systemText, std::size_t size,
                                    const char16_t *name);

} // namespace sfx
