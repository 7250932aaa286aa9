// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/keptremoval.h"

#include "helpers/self-extractor/windows/fileowner.h"
#include "helpers/self-extractor/windows/folderwalk.h"
#include "helpers/self-extractor/windows/markedentries.h"

namespace sfx {

namespace {

// As many entries go even if it is late. So each start removes a part of a folder that is too large
// for one.
constexpr unsigned leastRemoved = 256;

// First, every program and library is asked whether it could be removed. While a program runs, nothing
// else is touched: it may have been started through the shell, and does not keep the folder in use then.
class ListedRemoval
{
public:
    ListedRemoval(const PathIndex &ours, std::uint64_t deadline)
        : m_ours(ours)
        , m_deadline(deadline)
    {
    }

    // Returns false if something is left. The folder itself goes if it is empty then.
    bool run(Handle &root);

private:
    bool isLate() const { return m_removed >= leastRemoved && GetTickCount64() > m_deadline; }
    bool walk(HANDLE root);
    bool visit(const ListedEntry &entry);
    void leave();

    const PathIndex &m_ours;
    std::uint64_t m_deadline;
    FolderWalk m_walk;
    bool m_isAsking = true;
    unsigned m_removed = 0;
};

// Asks or removes a file or link, or goes into a folder. Returns false if the entry is in use.
bool ListedRemoval::visit(const ListedEntry &entry)
{
    const std::uint64_t path = hashPath(m_walk->beginning, entry.name, entry.nameSize);
    const bool isAsked = entry.isFolder() || isProgramName(entry.name, entry.nameSize);
    if (m_ours.find(path) == PathIndex::none || (m_isAsking && !isAsked)) {
        return true;
    }
    Handle opened;
    const EntryUse use = openEntry(entry, opened);
    if (use != EntryUse::Free) {
        return use != EntryUse::InUse;
    }
    if (entry.isFolder()) {
        return m_walk.enter(opened, opened.get(), entry.attributes, hashInside(path));
    }
    if (m_isAsking) {
        return couldBeRemoved(opened.get(), entry.attributes);
    }
    ++m_removed;
    return removeEntry(opened, entry.attributes);
}

// A folder that is not empty stays: what is in it is not ours, or has been counted as left.
void ListedRemoval::leave()
{
    Handle folder(m_walk->folder.release());
    const DWORD attributes = m_walk->attributes;
    m_walk.leave();
    if (folder && !m_isAsking) {
        removeEntry(folder, attributes);
    }
}

// Returns false if an entry is in use, or if it is late.
bool ListedRemoval::walk(HANDLE root)
{
    Handle none; // the root stays with the caller
    bool isFree = true;
    if (!m_walk.enter(none, root, 0, emptyPathHash)) {
        return false;
    }
    while (m_walk) {
        if (isLate()) {
            return false;
        }
        if (m_walk->listing.next()) {
            isFree = visit(m_walk->listing.entry()) && isFree;
        } else {
            leave();
        }
    }
    return isFree;
}

bool ListedRemoval::run(Handle &root)
{
    if (!walk(root.get())) {
        return false;
    }
    m_isAsking = false;
    if (!walk(root.get())) {
        return false;
    }
    removeEntry(root, 0);
    return true;
}

} // namespace

bool removeEntry(Handle &opened, DWORD attributes)
{
    MarkedEntries one;
    if (!one.markFile(opened, attributes, 0)) {
        opened.reset();
        return false;
    }
    one.remove();
    return true;
}

bool removeListed(const Text &path, HANDLE mine, const PathIndex &ours, std::uint64_t deadline)
{
    constexpr DWORD kinds = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    Handle root;
    const DWORD attributes = GetFileAttributesW(wide(path.data()));
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & kinds) != FILE_ATTRIBUTE_DIRECTORY) {
        return false; // Windows would open the link itself, but Wine opens its target
    }
    const EntryUse use = openFolder(path, root);
    return use == EntryUse::Free
        ? haveSameOwner(root.get(), mine) && ListedRemoval(ours, deadline).run(root)
        : use == EntryUse::Gone;
}

} // namespace sfx
