// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// Lists the entries of a folder. While it is open, the folder can neither be renamed nor replaced
// by a link.
class FolderListing
{
public:
    // `path` is in extended form. Returns false if it cannot be opened, or is a link, or is not a
    // folder.
    [[nodiscard]] bool open(const Text &path);
    // Returns false if there are no more entries. `name` is valid until the next call.
    bool next();
    void close() { m_folder.reset(); }
    // The folder's handle, with READ_CONTROL.
    HANDLE handle() const { return m_folder.get(); }

    const char16_t *name() const { return reinterpret_cast<const char16_t *>(m_entry->FileName); }
    // In UTF-16 units; the name is not zero-terminated.
    std::size_t nameSize() const { return m_entry->FileNameLength / sizeof(char16_t); }
    DWORD attributes() const { return m_entry->FileAttributes; }

private:
    bool advance();

    Handle m_folder;
    const FILE_ID_BOTH_DIR_INFO *m_entry = nullptr;
    alignas(FILE_ID_BOTH_DIR_INFO) unsigned char m_buffer[4096] = {};
};

} // namespace sfx
