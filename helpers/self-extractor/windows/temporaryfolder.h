// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"

namespace sfx {

/// The user's temporary folder, absolute, with a separator at its end; it need not exist. False:
/// GetLastError() tells why.
[[nodiscard]] bool findTemporaryFolder(Text &folder);

} // namespace sfx
