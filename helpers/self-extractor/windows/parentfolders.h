// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/win32.h"

#include <cstdint>

namespace sfx {

// The folders in which files are being created, kept open: most files follow another one of the same
// folder. One thread uses it.
class ParentFolders
{
public:
    // The open folder above the last name of a path in extended form; the name begins at `name`.
    // Returns nullptr if it cannot be opened or is not a folder, with the reason in GetLastError().
    HANDLE above(const Text &path, std::size_t name);

private:
    struct Slot
    {
        std::uint64_t path = 0; // its hash
        Handle folder;
    };

    // Archives that are sorted by the kind of the files change between a few folders.
    Slot m_slots[32];
};

} // namespace sfx
