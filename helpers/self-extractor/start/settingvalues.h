// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/start/keylines.h"

namespace sfx {

// Reads a setting that is a text. Leaves it empty if the key is missing. Returns false if the value is
// not UTF-8 or contains a control character.
bool readText(const Slice &value, Text &text);

// Reads a setting that is on or off; it is off if the key is missing. Returns false if the value is
// neither 1 nor 0.
inline bool readSwitch(const Slice &value, bool &isOn)
{
    isOn = value.data != nullptr && value.equals("1");
    return value.data == nullptr || isOn || value.equals("0");
}

} // namespace sfx
