// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

/// What is in a folder, one entry after the other. As long as it is open, the folder can neither be
/// renamed nor replaced by a link.
class FolderListing
{
public:
    /// `path` is in extended form. False: it cannot be opened, or is a link and no folder.
    [[nodiscard]] bool open(const Text &path);
    /// False: nothing more. `name` is valid until the next call.
    bool next();
    void close() { m_folder.reset(); }
    /// With READ_CONTROL.
    HANDLE handle() const { return m_folder.get(); }

    const char16_t *name() const { return reinterpret_cast<const char16_t *>(m_entry->FileName); }
    /// In UTF-16 units; the name is not zero-terminated.
    std::size_t nameSize() const { return m_entry->FileNameLength / sizeof(char16_t); }
    DWORD attributes() const { return m_entry->FileAttributes; }

private:
    bool advance();

    Handle m_folder;
    const FILE_ID_BOTH_DIR_INFO *m_entry = nullptr;
    alignas(FILE_ID_BOTH_DIR_INFO) unsigned char m_buffer[4096] = {};
};

} // namespace sfx
