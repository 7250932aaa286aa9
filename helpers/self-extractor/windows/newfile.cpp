// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/newfile.h"

#include "helpers/self-extractor/windows/keptentries.h"
#include "helpers/self-extractor/windows/parentfolders.h"

namespace sfx {

namespace {

struct KeptOpen final : OpenFolders
{
    ParentFolders parents;
};

// Where the last name of a path begins.
std::size_t nameIn(const Text &path)
{
    std::size_t name = path.size();
    while (path.data()[name - 1] != u'\\') {
        --name;
    }
    return name;
}

} // namespace

bool createNewFile(const Text &path, Owned<OpenFolders> &folders, Handle &file)
{
    if (!folders) {
        folders = makeOwned<KeptOpen>();
    }
    if (!folders) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return false;
    }
    const std::size_t name = nameIn(path);
    const HANDLE parent = static_cast<KeptOpen &>(*folders).parents.above(path, name);
    if (parent == nullptr && GetLastError() == ERROR_FILE_NOT_FOUND) { // said of the folder
        SetLastError(ERROR_PATH_NOT_FOUND);
    }
    return parent != nullptr && createFile(parent, path.data() + name, path.size() - name, file);
}

} // namespace sfx
