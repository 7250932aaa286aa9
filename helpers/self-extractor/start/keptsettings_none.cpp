// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/keptsettings.h"

namespace sfx {

bool readKeptSetting(const Slice &, const Slice &, Settings &)
{
    return false;
}

} // namespace sfx
