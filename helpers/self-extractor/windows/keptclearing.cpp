// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/keptclearing.h"

#include "helpers/self-extractor/start/keptrules.h"
#include "helpers/self-extractor/windows/filesearch.h"
#include "helpers/self-extractor/windows/keptremoval.h"
#include "helpers/self-extractor/windows/lockfile.h"
#include "helpers/self-extractor/windows/removal.h"
#include "helpers/self-extractor/windows/usefile.h"

namespace sfx {

namespace {

constexpr std::uint64_t mostMilliseconds = 500;

bool mustGo(const UseFile &use, const KeptRecord &mine, const KeptRecord &other)
{
    const KeptFate fate = fateOf(other, use.lastUse(), timeNow());
    if (fate == KeptFate::StayFromNow) {
        use.setLastUse();
    }
    return fate == KeptFate::Go || isOlderVersion(mine, other);
}

void clearOne(const KeptFiles &paths, const KeptRecord &mine, std::uint64_t deadline)
{
    LockFile lock;
    UseFile use;
    if (!lock.take(paths.lock) || !removeOwnTree(paths.fresh, lock.handle(), deadline)) {
        return;
    }
    if (!use.claim(paths.use, nullptr, OPEN_EXISTING)) {
        // A start was killed before it had made anything.
        if (!pathExists(paths.use) && !pathExists(paths.root)) {
            lock.discard();
        }
        return;
    }
    KeptRecord other;
    PathIndex listed;
    if (use.read(other) && mustGo(use, mine, other) && use.readPaths(other, listed)
        && removeListed(paths.root, lock.handle(), listed, deadline)) {
        use.discard();
        lock.discard();
    }
}

} // namespace

void clearKeptFolders(const KeptPaths &paths, const KeptRecord &record)
{
    const std::uint64_t deadline = GetTickCount64() + mostMilliseconds;
    Text pattern;
    if (!pattern.append(paths.base) || !pattern.append(u"\\*") || !pattern.append(keptLockSuffix)) {
        return;
    }
    FileSearch search(pattern);
    for (bool more = search.isValid(); more; more = search.next()) {
        KeptFiles other;
        if (GetTickCount64() > deadline) {
            return;
        }
        // The own lock file matches, too, but its folder is in use.
        if (isKeptLockName(search.name()) && search.isPlainFile()
            && other.make(paths.base, search.name(), 2 * sizeof(Digest))) {
            clearOne(other, record, deadline);
        }
    }
}

} // namespace sfx
