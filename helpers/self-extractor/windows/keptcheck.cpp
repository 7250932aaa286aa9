// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/keptcheck.h"

#include "helpers/self-extractor/base/crc32.h"
#include "helpers/self-extractor/windows/folderwalk.h"
#include "helpers/self-extractor/windows/interrupt.h"
#include "helpers/self-extractor/windows/keptentries.h"
#include "helpers/self-extractor/windows/keptremoval.h"

namespace sfx {

namespace {

constexpr std::size_t pieceSize = 256 * 1024;

class KeptCheck
{
public:
    KeptCheck(KeptTable &table, KeptComparison how, const Owned<ProgressWindow> &window)
        : m_table(table)
        , m_how(how)
        , m_window(window)
    {
    }

    Status run(HANDLE application);

private:
    Status enter(Handle &folder, HANDLE listed, std::uint64_t beginning);
    Status check(const ListedEntry &entry);
    Status checkFound(const ListedEntry &entry, std::uint64_t path, KeptEntry &kept, Match match);
    Status compareContent(HANDLE file, const KeptEntry &kept, bool &isRight);
    Status replace(const ListedEntry &entry) const;
    Status stopReason() const;

    KeptTable &m_table;
    KeptComparison m_how;
    const Owned<ProgressWindow> &m_window;
    FolderWalk m_walk;
    Array<std::uint8_t> m_buffer;
};

Status KeptCheck::stopReason() const
{
    if (isInterrupted()) {
        return Status::Interrupted;
    }
    return m_window && m_window->isCancelled() ? Status::Cancelled : Status::Ok;
}

Status KeptCheck::enter(Handle &folder, HANDLE listed, std::uint64_t beginning)
{
    return m_walk.enter(folder, listed, 0, beginning) ? Status::Ok : Status::NoMemory;
}

Status KeptCheck::run(HANDLE application)
{
    Handle none;
    Status status = enter(none, application, m_table.beginning());
    while (status == Status::Ok && m_walk) {
        if (m_walk->listing.next()) {
            status = check(m_walk->listing.entry());
        } else {
            m_walk.leave();
            status = stopReason();
        }
    }
    return status;
}

Status KeptCheck::check(const ListedEntry &entry)
{
    const std::uint64_t path = hashPath(m_walk->beginning, entry.name, entry.nameSize);
    KeptEntry *kept = m_table.find(path);
    if (kept == nullptr) {
        return Status::Ok;
    }
    const FoundEntry found{entry.isFolder(), entry.isLink(), entry.size, entry.modified};
    const Match match = matchEntry(*kept, found, m_how.comparesContents);
    return match == Match::Wrong ? replace(entry) : checkFound(entry, path, *kept, match);
}

Status KeptCheck::checkFound(const ListedEntry &entry, std::uint64_t path, KeptEntry &kept,
                             Match match)
{
    Handle opened;
    if (entry.isFolder() || match == Match::ByContent) {
        const EntryUse use = openToRead(entry, opened);
        if (use != EntryUse::Free) {
            return use == EntryUse::Gone ? Status::Ok : Status::WriteFailed;
        }
    }
    if (match == Match::ByContent) {
        bool isRight = false;
        const Status status = compareContent(opened.get(), kept, isRight);
        if (status != Status::Ok || !isRight) {
            return status != Status::Ok ? status : replace(entry);
        }
    }
    kept.isRight = true;
    return entry.isFolder() ? enter(opened, opened.get(), hashInside(path)) : Status::Ok;
}

Status KeptCheck::compareContent(HANDLE file, const KeptEntry &kept, bool &isRight)
{
    if (m_buffer.size() == 0 && !m_buffer.allocate(pieceSize)) {
        return Status::NoMemory;
    }
    std::uint32_t sum = 0;
    std::uint64_t size = 0;
    DWORD got = 0;
    while (ReadFile(file, m_buffer.data(), pieceSize, &got, nullptr) && got != 0) {
        sum = crc32(sum, m_buffer.data(), got);
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
