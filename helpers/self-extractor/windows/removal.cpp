// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/removal.h"

#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

namespace {

constexpr unsigned rounds = 12;
constexpr DWORD firstPause = 10;    // milliseconds; doubled each round up to
constexpr DWORD longestPause = 2000;

/// Owner of a directory search.
class Search
{
public:
    Search(const Text &pattern, WIN32_FIND_DATAW &found)
        : m_handle(FindFirstFileW(wide(pattern.data()), &found))
    {
    }
    Search(const Search &) = delete;
    Search &operator=(const Search &) = delete;
    ~Search()
    {
        if (m_handle != INVALID_HANDLE_VALUE) {
            FindClose(m_handle);
        }
    }

    bool isValid() const { return m_handle != INVALID_HANDLE_VALUE; }
    bool next(WIN32_FIND_DATAW &found) { return FindNextFileW(m_handle, &found); }

private:
    HANDLE m_handle;
};

bool isDots(const wchar_t *name)
{
    return name[0] == L'.' && (name[1] == 0 || (name[1] == L'.' && name[2] == 0));
}

// A read-only file or folder cannot be removed.
void makeWritable(const Text &path, DWORD attributes)
{
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        const DWORD readOnly = FILE_ATTRIBUTE_READONLY;
        SetFileAttributesW(wide(path.data()), attributes & ~readOnly);
    }
}

bool removeFolder(const Text &path);

bool removeItem(const Text &path, DWORD attributes)
{
    makeWritable(path, attributes);
    const bool folder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (folder && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
        return removeFolder(path);
    }
    return folder ? RemoveDirectoryW(wide(path.data())) : DeleteFileW(wide(path.data()));
}

// Goes on after a failure, so that as little as possible is left.
bool removeFolder(const Text &path)
{
    Text pattern;
    if (!pattern.append(path) || !pattern.append(u"\\*")) {
        return false;
    }
    {
        WIN32_FIND_DATAW found;
        Search search(pattern, found);
        if (search.isValid()) {
            do {
                Text item;
                if (!isDots(found.cFileName) && item.append(path) && item.append(u"\\")
                    && item.append(reinterpret_cast<const char16_t *>(found.cFileName))) {
                    removeItem(item, found.dwFileAttributes);
                }
            } while (search.next(found));
        }
    }
    return RemoveDirectoryW(wide(path.data()));
}

} // namespace

bool removeTree(const Text &path)
{
    DWORD pause = firstPause;
    for (unsigned i = 0; i < rounds; ++i) {
        const DWORD attributes = GetFileAttributesW(wide(path.data()));
        if (attributes == INVALID_FILE_ATTRIBUTES || removeItem(path, attributes)) {
            return true;
        }
        Sleep(pause);
        pause = pause * 2 < longestPause ? pause * 2 : longestPause;
    }
    return false;
}

} // namespace sfx
