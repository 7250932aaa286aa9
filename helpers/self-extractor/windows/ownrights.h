// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/start/processrights.h"

namespace sfx {

// The rights of this process; the most, if they cannot be read.
ProcessRights processRights();

} // namespace sfx
