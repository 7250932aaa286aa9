// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/kepttable.h"

#include "helpers/self-extractor/archive/entryname.h"

#include <algorithm>

namespace sfx {

namespace {

KeptEntry keptEntry(const Archive &archive, std::uint32_t index, const Entry &entry)
{
    const CSzArEx &tables = archive.tables();
    KeptEntry kept = {};
    kept.size = entry.size;
    kept.crc = SzBitWithVals_Check(&tables.CRCs, index) ? tables.CRCs.Vals[index] : 0;
    kept.isFolder = entry.isFolder;
    // The system takes neither 0 nor a negative number for a time.
    if (entry.hasModified && entry.modified <= static_cast<std::uint64_t>(INT64_MAX)) {
        kept.modified = entry.modified;
    }
    return kept;
}

} // namespace

Match matchEntry(const KeptEntry &kept, const FoundEntry &found, bool comparesContents)
{
    if (found.isLink || found.isFolder != kept.isFolder) {
        return Match::Wrong;
    }
    if (kept.isFolder) {
        return Match::Right;
    }
    if (found.size != kept.size || (kept.modified != 0 && found.modified != kept.modified)) {
        return Match::Wrong;
    }
    const bool isEnough = kept.size == 0 || (kept.modified != 0 && !comparesContents);
    return isEnough ? Match::Right : Match::ByContent;
}

Status KeptTable::read(Archive &archive, const char16_t *folderName)
{
    const std::uint32_t count = archive.entryCount();
    Array<std::uint64_t> hashes;
    Array<std::uint64_t> folders; // of the folder that each entry is in
    if (!hashes.allocate(std::size_t{count} + 1) || !folders.allocate(count)
        || !m_entries.allocate(count)) {
        return Status::NoMemory;
    }
    const std::uint64_t folder = hashPath(emptyPathHash, folderName, textLength(folderName));
    m_beginning = hashInside(folder);
    for (std::uint32_t i = 0; i < count; ++i) {
        Entry entry;
        const Status status = archive.entry(i, entry);
        if (status != Status::Ok) {
            return status;
        }
        m_entries[i] = keptEntry(archive, i, entry);
        m_longestPath = std::max(m_longestPath, entry.pathSize);
        if (!entry.isFolder) {
            m_newest = std::max(m_newest, m_entries[i].modified);
        }
        const std::size_t name = lastComponent(entry.path, entry.pathSize);
        folders[i] = name == 0 ? folder : hashPath(m_beginning, entry.path, name - 1);
        hashes[i] = hashPath(hashInside(folders[i]), entry.path + name, entry.pathSize - name);
    }
    hashes[count] = folder;
    return build(std::move(hashes), folders) ? Status::Ok : Status::NoMemory;
}

bool KeptTable::build(Array<std::uint64_t> hashes, const Array<std::uint64_t> &folders)
{
    if (!m_index.build(std::move(hashes))) {
        return false;
    }
    for (std::size_t i = 0; i < folders.size(); ++i) {
        KeptEntry *folder = find(folders[i]);
        ++(folder != nullptr ? folder->children : m_children);
    }
    return true;
}

KeptEntry *KeptTable::find(std::uint64_t hash)
{
    const std::uint32_t index = m_index.find(hash);
    return index < m_entries.size() ? &m_entries[index] : nullptr;
}

void KeptTable::forget()
{
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        m_entries[i].isRight = false;
    }
}

std::uint32_t KeptTable::missing() const
{
    std::uint32_t count = 0;
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        count += m_entries[i].isRight ? 0u : 1u;
    }
    return count;
}

bool KeptTable::listRight(Array<bool> &right) const
{
    if (!right.allocate(m_entries.size())) {
        return false;
    }
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        right[i] = m_entries[i].isRight;
    }
    return true;
}

std::uint64_t KeptTable::missingBytes() const
{
    std::uint64_t bytes = 0;
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        bytes += m_entries[i].isRight ? 0 : m_entries[i].size;
    }
    return bytes;
}

} // namespace sfx
