// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/exitcodes.h"

#include <cstdint>

namespace sfx {

enum class Language { English, Chinese };

/// The sentence for a failure; never nullptr.
const char16_t *messageText(ExitCode code, Language language);

/// Appends the sentence that says how much room is missing. False: no memory.
[[nodiscard]] bool appendMissing(Text &text, std::uint64_t bytes, Language language);

/// Title of the box when the block gives none.
constexpr const char16_t *defaultTitle = u"Kestrelpack";

} // namespace sfx
