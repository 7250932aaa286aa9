// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

namespace sfx {

// Whether this system error says that another process holds the file, as a virus scanner does for
// a moment with every new program.
bool isHeldByAnother(unsigned long systemError);

// The pauses between the attempts at a file that another process holds, in milliseconds; 2.5
// seconds together. Short at first, because most scanners need only a moment.
inline constexpr unsigned holderPauses[] = {10, 20, 40, 80, 150, 300, 500, 600, 800};

} // namespace sfx
