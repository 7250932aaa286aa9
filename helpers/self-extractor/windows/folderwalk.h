// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/memory.h"
#include "helpers/self-extractor/windows/folderlisting.h"

namespace sfx {

// A folder that is being walked through.
struct WalkedFolder
{
    Handle folder; // empty if somebody else owns it
    DWORD attributes = 0;
    std::uint64_t beginning = 0; // the hash that the paths in it begin with
    FolderListing listing;
    Owned<WalkedFolder> above;
};

// The way through a tree of folders, with all folders on the way open. They are on the heap, since a
// tree may be thousands of folders deep.
class FolderWalk
{
public:
    FolderWalk() = default;
    FolderWalk(const FolderWalk &) = delete;
    FolderWalk &operator=(const FolderWalk &) = delete;
    ~FolderWalk()
    {
        while (m_current) {
            leave();
        }
    }

    // Goes into a folder whose handle is `listed`, and owns `folder`. Returns false if there is not
    // enough memory.
    [[nodiscard]] bool enter(Handle &folder, HANDLE listed, DWORD attributes,
                             std::uint64_t beginning);
    // Goes back to the folder above.
    void leave();
    // False if the walk has not begun, or has ended.
    explicit operator bool() const { return static_cast<bool>(m_current); }
    WalkedFolder *operator->() const { return &*m_current; }

private:
    Owned<WalkedFolder> m_current;
};

} // namespace sfx
