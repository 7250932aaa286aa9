// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/exitcodes.h"

#include <cstdint>

namespace sfx {

enum class Language { English, Chinese };

// The message for a failure; never nullptr.
const char16_t *messageText(ExitCode code, Language language);

// Appends the sentence that says how much space is missing. Returns false if there is not enough
// memory.
[[nodiscard]] bool appendMissing(Text &text, std::uint64_t bytes, Language language);

// Title of the message box if the block contains none.
constexpr const char16_t *defaultTitle = u"Kestrelpack";

} // namespace sfx
