// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/parentfolders.h"

#include "helpers/self-extractor/start/pathindex.h"
#include "helpers/self-extractor/windows/keptentries.h"

#include <iterator>

namespace sfx {

HANDLE ParentFolders::above(const Text &path, std::size_t name)
{
    const std::size_t size = name - 1; // without the separator
    const std::uint64_t hash = hashPath(emptyPathHash, path.data(), size);
    Slot &slot = m_slots[hash % std::size(m_slots)];
    if (slot.folder && slot.path == hash) {
        return slot.folder.get();
    }
    Text folder;
    if (!folder.assign(path.data(), size)) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    slot.path = hash;
    slot.folder.reset();
    return guardFolder(folder, slot.folder) ? slot.folder.get() : nullptr;
}

} // namespace sfx
