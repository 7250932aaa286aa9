// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/exitcodes.h"

namespace sfx {

enum class Language { English, Chinese };

/// The sentence for a failure; never nullptr.
const char16_t *messageText(ExitCode code, Language language);

/// Title of the box when the block gives none.
constexpr const char16_t *defaultTitle = u"Kestrelpack";

} // namespace sfx
