// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/core/folderplan.h"

namespace sfx {

/// Looks at how a folder is packed, before memory is taken for it or anything is read. Unsupported:
/// a method that this module does not have, or dictionaries that need more than `memory` bytes
/// together. Damaged: coders that feed each other in a circle.
Status checkFolder(const FolderPlan &plan, std::uint64_t memory);

} // namespace sfx
