// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <utility>
#include <vector>

namespace kit {

// Wine's version, or an empty text on Windows.
std::string wineVersion();

// Returns true if Windows would show a question, or refuse, when this process starts a program that
// asks for administrator's rights.
bool asksForConsent();

// What the head of the report says about this machine: names and values.
std::vector<std::pair<std::string, std::string>> systemFacts();

} // namespace kit
