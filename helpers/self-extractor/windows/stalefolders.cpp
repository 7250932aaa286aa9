// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/stalefolders.h"

#include "helpers/self-extractor/start/privatename.h"
#include "helpers/self-extractor/start/winpath.h"
#include "helpers/self-extractor/windows/fileowner.h"
#include "helpers/self-extractor/windows/filesearch.h"
#include "helpers/self-extractor/windows/lockfile.h"
#include "helpers/self-extractor/windows/removal.h"

namespace sfx {

namespace {

constexpr unsigned mostFolders = 16;
constexpr std::uint64_t mostMilliseconds = 500;

// Returns true if the folder has been removed.
bool removeUntil(std::uint64_t deadline, const Text &lockPath, HANDLE mine)
{
    LockFile lock;
    Text folder;
    if (!lock.take(lockPath) || !haveSameOwner(lock.handle(), mine)
        || !folder.assign(lockPath.data(), lockPath.size() - textLength(lockSuffix))
        || !removeOwnTree(folder, mine, deadline)) {
        return false;
    }
    lock.discard();
    return true;
}

std::uint64_t newDeadline()
{
    return GetTickCount64() + mostMilliseconds;
}

} // namespace

bool removeStaleFolder(const Text &lockPath, HANDLE mine)
{
    return removeUntil(newDeadline(), lockPath, mine);
}

void removeStaleFolders(const Text &temporaryFolder, HANDLE mine)
{
    const std::uint64_t deadline = newDeadline();
    Text path;
    if (!toExtendedPath(temporaryFolder, path)) {
        return;
    }
    const std::size_t base = path.size();
    if (!path.append(lockPattern)) {
        return;
    }
    FileSearch search(path);
    unsigned folders = 0;
    for (bool more = search.isValid(); more; more = search.next()) {
        path.truncate(base);
        if (isLockName(search.name()) && search.isPlainFile() && path.append(search.name())
            && removeUntil(deadline, path, mine)) {
            ++folders;
        }
        if (folders == mostFolders || GetTickCount64() > deadline) {
            return;
        }
    }
}

} // namespace sfx
