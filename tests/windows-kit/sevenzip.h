// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/windows-kit/product.h"

namespace kit {

// A 7z archive of files with content, stored without compression (7-Zip, DOC/7zFormat.txt).
std::string storedArchive(const std::vector<Entry> &entries);

} // namespace kit
