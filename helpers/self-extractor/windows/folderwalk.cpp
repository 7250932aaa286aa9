// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/folderwalk.h"

namespace sfx {

bool FolderWalk::enter(Handle &folder, HANDLE listed, DWORD attributes, std::uint64_t beginning)
{
    auto entered = makeOwned<WalkedFolder>();
    if (!entered) {
        return false;
    }
    entered->folder.reset(folder.release());
    entered->attributes = attributes;
    entered->beginning = beginning;
    entered->listing.begin(listed);
    entered->above = std::move(m_current);
    m_current = std::move(entered);
    return true;
}

void FolderWalk::leave()
{
    Owned<WalkedFolder> above = std::move(m_current->above);
    m_current = std::move(above);
}

} // namespace sfx
