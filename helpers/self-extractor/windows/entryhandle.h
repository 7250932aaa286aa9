// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/start/entryuse.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// Creates a folder, which must be new, and opens it in the same step, so that nobody can replace it
// in between. While the handle is open, the folder cannot be renamed, removed or replaced. `path` is
// in extended form. Returns false on failure, with the reason in GetLastError().
[[nodiscard]] bool createFolder(const Text &path, SECURITY_ATTRIBUTES *security, Handle &folder);

// The following functions open for removal, with the right DELETE. They never follow a link; the
// entry is the link itself. (Wine 8 does follow it, so callers compare the kind of what they got.)

// The rights to a folder that is listed.
constexpr ACCESS_MASK listing = FILE_LIST_DIRECTORY | READ_CONTROL;

// Opens a folder by its path in extended form, also for listing and with READ_CONTROL. While the
// handle is open, the folder cannot be renamed or replaced. NotForUs: it is not a folder.
EntryUse openFolder(const Text &path, Handle &folder, ACCESS_MASK access = listing | DELETE);

// An entry of an open folder, as a listing names it.
struct ListedEntry
{
    HANDLE folder = nullptr;
    const char16_t *name = nullptr; // not zero-terminated
    std::size_t nameSize = 0;       // in UTF-16 units
    DWORD attributes = 0;
    std::uint64_t size = 0;     // in bytes
    std::uint64_t modified = 0; // in 100 ns since 1601

    bool isLink() const { return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0; }
    bool isFolder() const { return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 && !isLink(); }
    bool isReadOnly() const { return (attributes & FILE_ATTRIBUTE_READONLY) != 0; }
};

// Opens an entry relative to its folder's handle, so it does not matter what happens to the folders
// above. Folders are opened as by openFolder(). A read-only entry also gets the right to change its
// attributes. NotForUs: it is no longer of the kind that was listed.
EntryUse openEntry(const ListedEntry &entry, Handle &opened);

} // namespace sfx
