// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// The entries of a folder whose names match a pattern.
class FileSearch
{
public:
    // `pattern` is a path in extended form.
    explicit FileSearch(const Text &pattern)
        : m_search(FindFirstFileW(wide(pattern.data()), &m_found))
    {
    }
    FileSearch(const FileSearch &) = delete;
    FileSearch &operator=(const FileSearch &) = delete;
    ~FileSearch()
    {
        if (isValid()) {
            FindClose(m_search);
        }
    }

    // Returns false if nothing matches.
    bool isValid() const { return m_search != INVALID_HANDLE_VALUE; }
    bool next() { return FindNextFileW(m_search, &m_found); }

    const char16_t *name() const { return reinterpret_cast<const char16_t *>(m_found.cFileName); }
    // Neither a folder nor a link.
    bool isPlainFile() const
    {
        constexpr DWORD others = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
        return (m_found.dwFileAttributes & others) == 0;
    }

private:
    WIN32_FIND_DATAW m_found = {};
    HANDLE m_search;
};

} // namespace sfx
