// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/windowstation.h"

namespace sfx {

bool hasVisibleWindows(const SystemLibrary &user32)
{
    const auto ownStation
        = user32.function<decltype(&::GetProcessWindowStation)>("GetProcessWindowStation");
    const auto information
        = user32.function<decltype(&::GetUserObjectInformationW)>("GetUserObjectInformationW");
    USEROBJECTFLAGS flags = {};
    return ownStation != nullptr && information != nullptr
        && information(ownStation(), UOI_FLAGS, &flags, sizeof flags, nullptr)
        && (flags.dwFlags & WSF_VISIBLE) != 0;
}

} // namespace sfx
