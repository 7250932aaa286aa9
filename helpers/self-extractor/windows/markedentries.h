// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/memory.h"
#include "helpers/self-extractor/base/thread.h"
#include "helpers/self-extractor/windows/entryhandle.h"

#include <atomic>

namespace sfx {

// Whether an open file with these attributes could be removed now. A program that runs cannot.
// Nothing changes.
bool couldBeRemoved(HANDLE opened, DWORD attributes);
// Marks an open entry: it is gone when its handle is closed. Returns false if it is in use, or is a
// folder that is not empty.
bool markForRemoval(HANDLE opened);

// Open files and folders that are removed together, or not at all.
class MarkedEntries
{
public:
    MarkedEntries() = default;
    MarkedEntries(const MarkedEntries &) = delete;
    MarkedEntries &operator=(const MarkedEntries &) = delete;
    // Leaves everything as it was.
    ~MarkedEntries() { release(); }

    // Keeps a folder with these attributes open. Returns false if there is not enough memory.
    [[nodiscard]] bool keepFolder(Handle &opened, DWORD attributes);
    // Marks a file or link of `size` bytes and keeps it open. Returns false if it is in use, or if there is
    // not enough memory. Several threads may call it at the same time.
    [[nodiscard]] bool markFile(Handle &opened, DWORD attributes, std::uint64_t size);
    // Makes all folders writable: entries of read-only ones cannot be removed everywhere.
    void makeWritable();
    // Closes all handles, the last one first. Files are gone then, and folders too if they are empty.
    // Several threads may call it together: each closes a part of the files.
    void remove();
    // Takes the marks away and closes all handles.
    void release();

    std::size_t count() const { return m_count; }
    HANDLE handle(std::size_t index) const { return m_entries[index].handle; }

private:
    enum class Kind : std::uint8_t { SmallFile, LargeFile, Folder };

    struct Entry
    {
        HANDLE handle;
        DWORD restored; // attributes of a read-only entry, if it stays; 0: it is not read-only
        Kind kind;
    };

    [[nodiscard]] bool keep(Handle &opened, DWORD attributes, Kind kind);

    // Takes the last entry off the list; nullptr if there is none. It is valid until another one is kept.
    Entry *takeLast();

    Monitor m_monitor; // protects the others
    Array<Entry> m_entries;
    std::atomic<std::size_t> m_count = 0;
};

} // namespace sfx
