// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/removal.h"

#include "helpers/self-extractor/windows/fileowner.h"
#include "helpers/self-extractor/windows/folderlisting.h"
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
    TreeRemoval(HANDLE root, std::uint64_t deadline) : m_root(root), m_deadline(deadline) {}
    TreeRemoval(const TreeRemoval &) = delete;
    TreeRemoval &operator=(const TreeRemoval &) = delete;
    ~TreeRemoval()
    {
        while (m_level) {
            leave();
        }
    }

    // Returns true if nothing is left in the folder, and it is gone when its handle is closed.
    bool run();

private:
    // A folder that is being walked through. Levels are on the heap, since a tree may be thousands
    // of folders deep.
    struct Level
    {
        Handle folder; // empty for the root
        DWORD attributes = 0;
        FolderListing listing;
        Owned<Level> above;
    };

    bool stopsMarking() const
    {
        return m_files.count() >= leastMarked && GetTickCount64() > m_deadline;
    }
    bool enter(Handle &folder, DWORD attributes, HANDLE listed);
    bool leave();
    bool askPrograms();
    bool askEntry(const ListedEntry &entry);
    bool markFiles(HANDLE folder);
    bool markFile(const ListedEntry &entry);
    bool markAll();

    HANDLE m_root;
    std::uint64_t m_deadline;
    Owned<Level> m_level;
    FolderListing m_listing;
    MarkedEntries m_folders; // each after those in it
    MarkedEntries m_files;
    bool m_hasMore = false; // files that are not marked yet
};

bool TreeRemoval::enter(Handle &folder, DWORD attributes, HANDLE listed)
{
    auto level = makeOwned<Level>();
    if (!level) {
        return false;
    }
    level->folder.reset(folder.release());
    level->attributes = attributes;
    level->listing.begin(listed);
    level->above = std::move(m_level);
    m_level = std::move(level);
    return true;
}

bool TreeRemoval::leave()
{
    const bool kept = !m_level->folder
        || m_folders.keepFolder(m_level->folder, m_level->attributes);
    Owned<Level> above = std::move(m_level->above);
    m_level = std::move(above);
    return kept;
}

// Returns false if the entry is in use.
bool TreeRemoval::askEntry(const ListedEntry &entry)
{
    if (!entry.isFolder() && !isProgramName(entry.name, entry.nameSize)) {
        return true;
    }
    Handle opened;
    const EntryUse use = openEntry(entry, opened);
    if (use != EntryUse::Free) {
        return use != EntryUse::InUse;
    }
    return entry.isFolder() ? enter(opened, entry.attributes, opened.get())
                            : couldBeRemoved(opened.get(), entry.attributes);
}

bool TreeRemoval::askPrograms()
{
    Handle none;
    if (!enter(none, 0, m_root)) {
        return false;
    }
    while (m_level) {
        if (m_level->listing.next()) {
            if (!askEntry(m_level->listing.entry())) {
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

bool TreeRemoval::markFiles(HANDLE folder)
{
    m_listing.begin(folder);
    while (!stopsMarking() && m_listing.next()) {
        const ListedEntry entry = m_listing.entry();
        if (!entry.isFolder() && !markFile(entry)) {
            return false;
        }
    }
    return true;
}

bool TreeRemoval::markAll()
{
    m_hasMore = false;
    for (std::size_t i = 0; i < m_folders.count(); ++i) {
        if (!markFiles(m_folders.handle(i))) {
            return false;
        }
    }
    return markFiles(m_root);
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
    } while (m_hasMore);
    m_folders.remove();
    return markForRemoval(m_root);
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

bool removeOnce(const Text &path, Handle &root, std::uint64_t deadline)
{
    if (!TreeRemoval(root.get(), deadline).run()) {
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
    if (isLink(path)) {
        return false;
    }
    const EntryUse use = openFolder(path, root);
    return use == EntryUse::Free
        ? haveSameOwner(root.get(), mine) && removeOnce(path, root, deadline)
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
