// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/windows/entryhandle.h"

namespace sfx {

// Lists the entries of an open folder, without the folder itself and the one above.
class FolderListing
{
public:
    // Lists this folder from its first entry on. The handle must stay open.
    void begin(HANDLE folder)
    {
        m_folder = folder;
        m_entry = nullptr;
    }
    // Returns false if there are no more entries. The entry is valid until the next call.
    bool next();
    ListedEntry entry() const;

private:
    bool advance();

    HANDLE m_folder = nullptr;
    const FILE_FULL_DIR_INFO *m_entry = nullptr;
    alignas(FILE_FULL_DIR_INFO) unsigned char m_buffer[4096] = {};
};

} // namespace sfx
