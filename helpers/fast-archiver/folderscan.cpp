// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/folderscan.h"

#include "helpers/fast-archiver/folderlisting.h"

#include <algorithm>

namespace fast {

Outcome<std::vector<SourceFile>> scanFolder(const pe::NativePath &folder,
                                            const std::atomic<bool> &stopped)
{
    FolderListing listing(folder, stopped);
    auto listed = listing.list(nullptr);
    std::vector<SourceFile> &files = listing.files();
    for (std::size_t i = 0; !listed.hasFailed() && i < files.size(); ++i) {
        if (files[i].isFolder) {
            const SourceFile inner = files[i]; // a copy, because list() adds to the list
            listed = listing.list(&inner);
        }
    }
    if (listed.hasFailed()) {
        return listed.failure();
    }
    std::sort(files.begin(), files.end(),
              [](const SourceFile &one, const SourceFile &other) { return one.path < other.path; });
    return std::move(files);
}

} // namespace fast
