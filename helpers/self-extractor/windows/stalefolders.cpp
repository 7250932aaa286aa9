// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/stalefolders.h"

#include "helpers/self-extractor/start/privatename.h"
#include "helpers/self-extractor/start/winpath.h"
#include "helpers/self-extractor/windows/fileowner.h"
#include "helpers/self-extractor/windows/lockfile.h"
#include "helpers/self-extractor/windows/removal.h"

namespace sfx {

namespace {

constexpr unsigned mostFolders = 16;
constexpr std::uint64_t mostMilliseconds = 500;

// The entries of the temporary folder that may be lock files.
class LockSearch
{
public:
    explicit LockSearch(const Text &pattern)
        : m_search(FindFirstFileW(wide(pattern.data()), &found))
    {
    }
    LockSearch(const LockSearch &) = delete;
    LockSearch &operator=(const LockSearch &) = delete;
    ~LockSearch()
    {
        if (isValid()) {
            FindClose(m_search);
        }
    }

    bool isValid() const { return m_search != INVALID_HANDLE_VALUE; }
    bool next() { return FindNextFileW(m_search, &found); }

    WIN32_FIND_DATAW found = {};

private:
    HANDLE m_search;
};

bool isPlainFile(const WIN32_FIND_DATAW &found)
{
    constexpr DWORD others = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    return (found.dwFileAttributes & others) == 0;
}

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
    LockSearch search(path);
    unsigned folders = 0;
    for (bool more = search.isValid(); more; more = search.next()) {
        const auto *name = reinterpret_cast<const char16_t *>(search.found.cFileName);
        path.truncate(base);
        if (isLockName(name) && isPlainFile(search.found) && path.append(name)
            && removeUntil(deadline, path, mine)) {
            ++folders;
        }
        if (folders == mostFolders || GetTickCount64() > deadline) {
            return;
        }
    }
}

} // namespace sfx
