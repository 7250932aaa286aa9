// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/archive/archive.h"
#include "helpers/self-extractor/base/sha256.h"
#include "helpers/self-extractor/start/startplan.h"

namespace sfx {

using Digest = std::uint8_t[Sha256::digestSize];

// Beside a kept folder, with its name and these suffixes: the file that one start at a time has open
// while it looks at the folder, the file that every start has open while its program runs, and the
// folder that the application is unpacked into before it becomes the kept one.
constexpr const char16_t *keptLockSuffix = u".lock";
constexpr const char16_t *keptUseSuffix = u".used";
constexpr const char16_t *keptNewSuffix = u".new";

// Computes what identifies the content of a kept folder: all entries as the archive's header
// describes them, the sizes of the packed streams, the name of the application's folder, and the
// settings that the folder is kept by. Returns the errors of Archive::entry().
Status identifyContent(Archive &archive, const StartPlan &plan, Digest &digest);

// Computes what identifies the product of a plan. Zeros if the settings do not name it.
void identifyProduct(const Settings &settings, Digest &digest);

// Sets `name` to the name of a kept folder. Returns false if there is not enough memory.
[[nodiscard]] bool makeKeptName(const Digest &digest, Text &name);

// Whether this is the name of a kept folder's lock file.
bool isKeptLockName(const char16_t *name);

} // namespace sfx
