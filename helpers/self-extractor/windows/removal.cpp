// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/removal.h"

#include "helpers/self-extractor/base/thread.h"
#include "helpers/self-extractor/windows/fileowner.h"
#include "helpers/self-extractor/windows/folderlisting.h"
#include "helpers/self-extractor/windows/markedentries.h"

#include <atomic>

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

// With fewer folders to look into, or files to remove, threads cost more than they gain.
constexpr std::size_t leastFolders = 4;
constexpr std::size_t leastFiles = 64;
// Most of the time they wait for the disk, and for those that look on, such as virus scanners.
constexpr unsigned otherThreads = 3;

// One try to remove what is in a folder, and the folder.
//
// First, all folders are opened, and every program and library is asked whether it could be
// removed. While a program runs, nothing else is touched: a marked file cannot be opened, and the
// program might need it at this moment. Then all files are marked and kept open. If one is in use,
// the marks are taken away again. If none is, the files go as their handles are closed, and then
// the folders. So each file is opened only once. Several threads mark and close the files of a large
// folder.
//
// After the deadline, no more files are marked, and those that are go. The deadline does not end the
// search for programs, which all must be asked: on a slow machine, nothing would ever go.
class TreeRemoval
{
public:
    TreeRemoval(HANDLE root, std::uint64_t deadline) : m_root(root), m_deadline(deadline) {}
    TreeRemoval(const TreeRemoval &) = delete;
    TreeRemoval &operator=(const TreeRemoval &) = delete;

    // Returns true if nothing is left in the folder, and it is gone when its handle is closed.
    bool run();

private:
    enum class Step : std::uint8_t { Ask, Mark, Remove };

    bool isLate() const { return m_files.count() >= leastMarked && GetTickCount64() > m_deadline; }
    bool takeStep(Step step, unsigned others);
    static void work(void *removal);
    void visitFolders();
    bool visit(const ListedEntry &entry);

    HANDLE m_root;
    std::uint64_t m_deadline;
    MarkedEntries m_folders; // without the root; each after the one that it is in
    MarkedEntries m_files;
    Step m_step = Step::Ask;
    Thread m_others[otherThreads];
    // Changed by the threads:
    std::atomic<std::size_t> m_nextFolder = 0; // 0: the root
    std::atomic<bool> m_isInUse = false;
    std::atomic<bool> m_hasMore = false; // files that are not marked yet
};

// Returns false if the entry is in use.
bool TreeRemoval::visit(const ListedEntry &entry)
{
    const bool isFolder = entry.isFolder();
    const bool isSkipped
        = m_step == Step::Mark ? isFolder : !isFolder && !isProgramName(entry.name, entry.nameSize);
    if (isSkipped) {
        return true;
    }
    Handle opened;
    const EntryUse use = openEntry(entry, opened);
    if (use != EntryUse::Free) {
        return use != EntryUse::InUse;
    }
    if (isFolder) {
        return m_folders.keepFolder(opened, entry.attributes);
    }
    if (m_step == Step::Mark && m_files.count() < mostMarked) {
        return m_files.markFile(opened, entry.attributes, entry.size);
    }
    m_hasMore = true;
    return couldBeRemoved(opened.get(), entry.attributes);
}

// When programs are asked, the list of folders grows meanwhile.
void TreeRemoval::visitFolders()
{
    FolderListing listing;
    std::size_t next = 0;
    while (!m_isInUse && (next = m_nextFolder++) <= m_folders.count()) {
        listing.begin(next == 0 ? m_root : m_folders.handle(next - 1));
        while (!isLate() && listing.next()) {
            if (!visit(listing.entry())) {
                m_isInUse = true;
                break;
            }
        }
    }
}

// Runs on each thread.
void TreeRemoval::work(void *removal)
{
    auto *self = static_cast<TreeRemoval *>(removal);
    if (self->m_step == Step::Remove) {
        self->m_files.remove();
    } else {
        self->visitFolders();
    }
}

// Returns false if something is in use.
bool TreeRemoval::takeStep(Step step, unsigned others)
{
    m_step = step;
    m_nextFolder = 0;
    runOnThreads(m_others, others, work, this);
    return !m_isInUse;
}

bool TreeRemoval::run()
{
    if (!takeStep(Step::Ask, 0)) {
        return false;
    }
    do {
        m_hasMore = false;
        if (!takeStep(Step::Mark, m_folders.count() < leastFolders ? 0 : otherThreads)) {
            return false;
        }
        m_folders.makeWritable();
        takeStep(Step::Remove, m_files.count() < leastFiles ? 0 : otherThreads);
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
