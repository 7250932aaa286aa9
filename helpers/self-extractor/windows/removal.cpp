// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/removal.h"

#include "helpers/self-extractor/windows/fileowner.h"
#include "helpers/self-extractor/windows/folderwalk.h"
#include "helpers/self-extractor/windows/markedentries.h"

namespace sfx {

namespace {

// Pauses between the tries, in milliseconds; 4.5 s together. The first ones are short: a program
// that has just ended holds its file a little longer.
constexpr DWORD pauses[] = {1, 2, 4, 10, 20, 40, 80, 160, 320, 640, 1280, 2000};
constexpr std::uint64_t noDeadline = UINT64_MAX;
// Files that are open at the same time. Further ones are only asked, and marked later.
constexpr std::size_t mostMarked = 8192;
// As many go even if it is late. So each start removes a part of a folder that is too large for one.
constexpr std::size_t leastMarked = 256;

// One try to remove what is in a folder, and the folder.
//
// First, all folders are opened, and every program and library is asked whether it could be
// removed. While a program runs, nothing else is touched: a marked file cannot be opened, and the
// program might need it at this moment. Then all files are marked and kept open. If one is in use,
// the marks are taken away again. If none is, the files go as their handles are closed, and then
// the folders. So each file is opened only once.
//
// After the deadline, no more files are marked, and those that are go. The deadline does not end the
// search for programs, which all must be asked: on a slow machine, nothing would ever go.
class TreeRemoval
{
public:
    // `ours`: what may be removed; nullptr: everything.
    TreeRemoval(HANDLE root, const PathIndex *ours, std::uint64_t deadline)
        : m_root(root)
        , m_ours(ours)
        , m_deadline(deadline)
    {
    }
    // Returns true if nothing is left of what may be removed. The folder is gone when its handle is
    // closed, unless it contains something else.
    bool run();

private:
    bool stopsMarking();
    bool isOthers(std::uint64_t path);
    bool leave();
    bool askPrograms();
    bool askEntry(const ListedEntry &entry);
    bool markFiles(HANDLE folder, std::uint64_t beginning);
    bool markFile(const ListedEntry &entry);
    bool markAll();

    HANDLE m_root;
    const PathIndex *m_ours;
    std::uint64_t m_deadline;
    FolderWalk m_walk;
    FolderListing m_listing;
    MarkedEntries m_folders; // each after those in it
    MarkedEntries m_files;
    bool m_hasMore = false;   // files that are not marked yet
    bool m_hasOthers = false; // entries that must stay
    bool m_isStopped = false; // it was late; files may be left
};

bool TreeRemoval::stopsMarking()
{
    m_isStopped = m_isStopped || (m_files.count() >= leastMarked && GetTickCount64() > m_deadline);
    return m_isStopped;
}

// Whether an entry with this path must stay.
bool TreeRemoval::isOthers(std::uint64_t path)
{
    if (m_ours == nullptr || m_ours->find(path) != PathIndex::none) {
        return false;
    }
    m_hasOthers = true;
    return true;
}

bool TreeRemoval::leave()
{
    const bool kept = !m_walk->folder
        || m_folders.keepFolder(m_walk->folder, m_walk->attributes, m_walk->beginning);
    m_walk.leave();
    return kept;
}

// Returns false if the entry is in use.
bool TreeRemoval::askEntry(const ListedEntry &entry)
{
    const std::uint64_t path = hashPath(m_walk->beginning, entry.name, entry.nameSize);
    if (isOthers(path) || (!entry.isFolder() && !isProgramName(entry.name, entry.nameSize))) {
        return true;
    }
    Handle opened;
    const EntryUse use = openEntry(entry, opened);
    if (use != EntryUse::Free) {
        return use != EntryUse::InUse;
    }
    return entry.isFolder() ? m_walk.enter(opened, opened.get(), entry.attributes, hashInside(path))
                            : couldBeRemoved(opened.get(), entry.attributes);
}

bool TreeRemoval::askPrograms()
{
    Handle none;
    if (!m_walk.enter(none, m_root, 0, emptyPathHash)) {
        return false;
    }
    while (m_walk) {
        if (m_walk->listing.next()) {
            if (!askEntry(m_walk->listing.entry())) {
                return false;
            }
        } else if (!leave()) {
            return false;
        }
    }
    return true;
}

// Returns false if the file is in use.
bool TreeRemoval::markFile(const ListedEntry &entry)
{
    Handle opened;
    const EntryUse use = openEntry(entry, opened);
    if (use != EntryUse::Free) {
        return use != EntryUse::InUse;
    }
    if (m_files.count() < mostMarked) {
        return m_files.markFile(opened, entry.attributes);
    }
    m_hasMore = true;
    return couldBeRemoved(opened.get(), entry.attributes);
}

bool TreeRemoval::markFiles(HANDLE folder, std::uint64_t beginning)
{
    m_listing.begin(folder);
    while (!stopsMarking() && m_listing.next()) {
        const ListedEntry entry = m_listing.entry();
        if (!entry.isFolder() && !isOthers(hashPath(beginning, entry.name, entry.nameSize))
            && !markFile(entry)) {
            return false;
        }
    }
    return true;
}

bool TreeRemoval::markAll()
{
    m_hasMore = false;
    for (std::size_t i = 0; i < m_folders.count(); ++i) {
        if (!markFiles(m_folders.handle(i), m_folders.tag(i))) {
            return false;
        }
    }
    return markFiles(m_root, emptyPathHash);
}

bool TreeRemoval::run()
{
    if (!askPrograms()) {
        return false;
    }
    do {
        if (!markAll()) {
            return false;
        }
        m_folders.makeWritable();
        m_files.remove();
    } while (m_hasMore && !m_isStopped);
    m_folders.remove();
    return markForRemoval(m_root) || (m_hasOthers && !m_isStopped);
}

// On Windows, the handle shows that it is a link, too; Wine opens the target.
bool isLink(const Text &path)
{
    const DWORD attributes = GetFileAttributesW(wide(path.data()));
    return attributes != INVALID_FILE_ATTRIBUTES
        && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

struct Identity
{
    explicit Identity(HANDLE file) { isKnown = GetFileInformationByHandle(file, &info); }
    bool equals(const Identity &other) const
    {
        return isKnown && other.isKnown
            && info.dwVolumeSerialNumber == other.info.dwVolumeSerialNumber
            && info.nFileIndexHigh == other.info.nFileIndexHigh
            && info.nFileIndexLow == other.info.nFileIndexLow;
    }

    BY_HANDLE_FILE_INFORMATION info = {};
    bool isKnown;
};

EntryUse openOwnFolder(const Text &path, HANDLE mine, Handle &folder)
{
    const EntryUse use = isLink(path) ? EntryUse::NotForUs : openFolder(path, folder);
    return use == EntryUse::Free && !haveSameOwner(folder.get(), mine) ? EntryUse::NotForUs : use;
}

bool removeOnce(const Text &path, Handle &root, std::uint64_t deadline)
{
    if (!TreeRemoval(root.get(), nullptr, deadline).run()) {
        return false;
    }
    root.reset();
    // Wine 8 takes a folder for empty if its entries have been listed with the same handle.
    return GetFileAttributesW(wide(path.data())) == INVALID_FILE_ATTRIBUTES;
}

} // namespace

bool removeOwnTree(const Text &path, HANDLE mine, std::uint64_t deadline)
{
    Handle root;
    const EntryUse use = openOwnFolder(path, mine, root);
    return use == EntryUse::Free ? removeOnce(path, root, deadline) : use == EntryUse::Gone;
}

bool removeListed(const Text &path, HANDLE mine, const PathIndex &ours, std::uint64_t deadline)
{
    Handle root;
    const EntryUse use = openOwnFolder(path, mine, root);
    return use == EntryUse::Free ? TreeRemoval(root.get(), &ours, deadline).run()
                                 : use == EntryUse::Gone;
}

bool removeTree(const Text &path, Handle &guard)
{
    const Identity made(guard.get());
    Handle root; // stays open between the tries: nobody can replace the folder
    guard.reset();
    const auto tryOnce = [&] {
        if (!root) {
            const EntryUse use = openFolder(path, root);
            if (use != EntryUse::Free) {
                return use == EntryUse::Gone;
            }
            if (!made.equals(Identity(root.get()))) {
                root.reset();
                return false;
            }
        }
        return removeOnce(path, root, noDeadline);
    };
    for (const DWORD pause : pauses) {
        if (tryOnce()) {
            return true;
        }
        Sleep(pause);
    }
    return tryOnce();
}

} // namespace sfx
