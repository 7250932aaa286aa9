// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// Whether the process with this id works with the files in `folder`, as far as one can tell: its
// program lies there, or its command line names a file there, as that of an interpreter does. A
// process that cannot be examined counts, too.
bool worksIn(const Text &folder, DWORD processId);

} // namespace sfx
