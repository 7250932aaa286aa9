// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/windows-kit/row.h"

namespace kit {

// Runs lines of cmd as a scheduled task of the system account, and waits for their end. "%~dp0" in
// them is the row's folder. Returns why they did not run, or an empty text.
std::string runAsSystem(const Place &place, const std::string &lines);

} // namespace kit
