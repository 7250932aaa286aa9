// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/start/keylines.h"
#include "helpers/self-extractor/start/settings.h"

namespace sfx {

// Reads a setting of a kept folder. Returns false if the key is none of those, if it is repeated, or
// if the value is not valid. Only the full module keeps folders: there, keptsettings.cpp is linked,
// and in the small one, which knows no such key, keptsettings_none.cpp.
bool readKeptSetting(const Slice &key, const Slice &value, Settings &settings);

} // namespace sfx
