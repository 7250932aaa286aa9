// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/keptcheck.h"

#include "helpers/self-extractor/base/crc32.h"
#include "helpers/self-extractor/base/thread.h"
#include "helpers/self-extractor/windows/folderlisting.h"
#include "helpers/self-extractor/windows/interrupt.h"
#include "helpers/self-extractor/windows/keptentries.h"
#include "helpers/self-extractor/windows/keptremoval.h"

#include <atomic>

namespace sfx {

namespace {

constexpr std::size_t pieceSize = 256 * 1024;
// For reading the files' contents. One thread lists the folders as fast as several.
constexpr unsigned otherThreads = 3;

// The threads take the folders that wait, one after the other. The folders in a folder wait, open, from
// the moment when it is listed.
class KeptCheck
{
public:
    KeptCheck(KeptTable &table, KeptComparison how, const Owned<ProgressWindow> &window)
        : m_table(table)
        , m_how(how)
        , m_window(window)
    {
    }
    KeptCheck(const KeptCheck &) = delete;
    KeptCheck &operator=(const KeptCheck &) = delete;
    ~KeptCheck();

    Status run(HANDLE application);

private:
    struct Folder
    {
        Handle opened;               // empty if somebody else owns it
        HANDLE listed = nullptr;     // the folder's handle
        std::uint64_t beginning = 0; // the hash that the paths in it begin with
        std::uint32_t children = 0;  // the archive's entries in it
        Owned<Folder> next;
    };

    // What each thread has for itself.
    struct Place
    {
        std::uint64_t beginning = 0; // of the folder that is looked at
        std::uint32_t left = 0;      // the archive's entries in it that have not been seen
        FolderListing listing;
        Array<std::uint8_t> buffer;
    };

    static void runThread(void *self) { static_cast<KeptCheck *>(self)->work(); }
    void work();
    Status add(Handle &opened, HANDLE listed, std::uint64_t beginning, std::uint32_t children);
    Status checkFolder(const Folder &folder, Place &place);
    Status check(const ListedEntry &entry, Place &place);
    Status checkFound(const ListedEntry &entry, std::uint64_t path, KeptEntry &kept, Match match,
                      Place &place);
    Status compareContent(HANDLE file, const KeptEntry &kept, Array<std::uint8_t> &buffer,
                          bool &isRight) const;
    Status replace(const ListedEntry &entry) const;
    Status stopReason() const;

    KeptTable &m_table; // each entry is used by the thread that finds it
    KeptComparison m_how;
    const Owned<ProgressWindow> &m_window;
    Thread m_others[otherThreads];
    std::atomic<bool> m_stops = false;
    Monitor m_monitor; // protects the members below
    Owned<Folder> m_waiting;
    unsigned m_busy = 0; // threads that look into a folder
    Status m_status = Status::Ok;
};

// One after the other: the folders would go recursively otherwise, and there may be many.
KeptCheck::~KeptCheck()
{
    while (m_waiting) {
        Owned<Folder> next = std::move(m_waiting->next);
        m_waiting = std::move(next);
    }
}

Status KeptCheck::stopReason() const
{
    if (isInterrupted()) {
        return Status::Interrupted;
    }
    return m_stops || (m_window && m_window->isCancelled()) ? Status::Cancelled : Status::Ok;
}

Status KeptCheck::add(Handle &opened, HANDLE listed, std::uint64_t beginning,
                      std::uint32_t children)
{
    auto folder = makeOwned<Folder>();
    if (!folder) {
        return Status::NoMemory;
    }
    folder->opened.reset(opened.release());
    folder->listed = listed;
    folder->beginning = beginning;
    folder->children = children;
    const Locked lock(m_monitor);
    folder->next = std::move(m_waiting);
    m_waiting = std::move(folder);
    m_monitor.wake();
    return Status::Ok;
}

Status KeptCheck::run(HANDLE application)
{
    Handle none;
    const Status status = add(none, application, m_table.beginning(), m_table.children());
    if (status != Status::Ok) {
        return status;
    }
    runOnThreads(m_others, m_how.comparesContents ? otherThreads : 0, runThread, this);
    return m_status;
}

// Runs on each thread.
void KeptCheck::work()
{
    Place place;
    m_monitor.enter();
    while (!m_stops && (m_waiting || m_busy != 0)) {
        if (!m_waiting) {
            m_monitor.wait();
            continue;
        }
        Owned<Folder> folder = std::move(m_waiting);
        m_waiting = std::move(folder->next);
        ++m_busy;
        m_monitor.leave();
        const Status status = checkFolder(*folder, place);
        folder = Owned<Folder>();
        m_monitor.enter();
        --m_busy;
        if (status != Status::Ok && !m_stops) {
            m_status = status;
            m_stops = true;
        }
        m_monitor.wake();
    }
    m_monitor.leave();
}

// The last entry that the archive has is mostly the last one of the folder. So the system need not be
// asked once more to hear that there is none after it.
Status KeptCheck::checkFolder(const Folder &folder, Place &place)
{
    Status status = stopReason();
    place.beginning = folder.beginning;
    place.left = folder.children;
    place.listing.begin(folder.listed);
    while (status == Status::Ok && place.left != 0 && place.listing.next()) {
        status = check(place.listing.entry(), place);
    }
    return status;
}

Status KeptCheck::check(const ListedEntry &entry, Place &place)
{
    const std::uint64_t path = hashPath(place.beginning, entry.name, entry.nameSize);
    KeptEntry *kept = m_table.find(path);
    if (kept == nullptr) {
        return Status::Ok;
    }
    --place.left;
    const FoundEntry found{entry.isFolder(), entry.isLink(), entry.size, entry.modified};
    const Match match = matchEntry(*kept, found, m_how.comparesContents);
    return match == Match::Wrong ? replace(entry) : checkFound(entry, path, *kept, match, place);
}

Status KeptCheck::checkFound(const ListedEntry &entry, std::uint64_t path, KeptEntry &kept,
                             Match match, Place &place)
{
    Handle opened;
    const bool isEntered = entry.isFolder() && kept.children != 0;
    if (isEntered || match == Match::ByContent) {
        const EntryUse use = openToRead(entry, opened);
        if (use != EntryUse::Free) {
            return use == EntryUse::Gone ? Status::Ok : Status::WriteFailed;
        }
    }
    if (match == Match::ByContent) {
        bool isRight = false;
        const Status status = compareContent(opened.get(), kept, place.buffer, isRight);
        if (status != Status::Ok || !isRight) {
            return status != Status::Ok ? status : replace(entry);
        }
    }
    kept.isRight = true;
    return isEntered ? add(opened, opened.get(), hashInside(path), kept.children) : Status::Ok;
}

Status KeptCheck::compareContent(HANDLE file, const KeptEntry &kept, Array<std::uint8_t> &buffer,
                                 bool &isRight) const
{
    if (buffer.size() == 0 && !buffer.allocate(pieceSize)) {
        return Status::NoMemory;
    }
    std::uint32_t sum = 0;
    std::uint64_t size = 0;
    DWORD got = 0;
    while (ReadFile(file, buffer.data(), pieceSize, &got, nullptr) && got != 0) {
        sum = crc32(sum, buffer.data(), got);
        size += got;
        const Status status = stopReason();
        if (status != Status::Ok) {
            return status;
        }
    }
    isRight = size == kept.size && sum == kept.crc;
    return Status::Ok;
}

Status KeptCheck::replace(const ListedEntry &entry) const
{
    if (!m_how.removesWrong) {
        return Status::Ok;
    }
    Handle opened;
    const EntryUse use = openEntry(entry, opened);
    const bool isGone = use == EntryUse::Gone
        || (use == EntryUse::Free && removeEntry(opened, entry.attributes));
    return isGone ? Status::Ok : Status::WriteFailed;
}

} // namespace

Status checkKept(HANDLE application, KeptTable &table, const KeptComparison &how,
                 const Owned<ProgressWindow> &window)
{
    return KeptCheck(table, how, window).run(application);
}

} // namespace sfx
