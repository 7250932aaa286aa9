// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/keptentries.h"

#include "helpers/self-extractor/windows/entryopening.h"

namespace sfx {

bool guardFolder(const Text &path, Handle &folder)
{
    return openFolder(path, folder, listing) == EntryUse::Free;
}

EntryUse openToRead(const ListedEntry &entry, Handle &opened)
{
    constexpr ULONG shareAll = shareContent | FILE_SHARE_DELETE;
    const bool folder = entry.isFolder();
    const Way way = folder
        ? Way{listing, shareAll, FILE_OPEN, neverFollow | FILE_DIRECTORY_FILE}
        : Way{FILE_READ_DATA, shareAll, FILE_OPEN, neverFollow | FILE_NON_DIRECTORY_FILE};
    const NTSTATUS status
        = openByName({entry.folder, entry.name, entry.nameSize}, way, nullptr, opened);
    return checkedUse(status, opened, folder ? FILE_ATTRIBUTE_DIRECTORY : 0);
}

} // namespace sfx
