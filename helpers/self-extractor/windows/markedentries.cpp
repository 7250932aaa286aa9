// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/markedentries.h"

#include <cstring>

namespace sfx {

namespace {

// winbase.h and ntddk.h define these for Windows 10 only, and the module also runs on earlier
// versions: FileDispositionInfoEx, and its flags for removal with the name gone at once, even if a
// scanner has the file open, but not for programs that run.
constexpr auto dispositionEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(21);
constexpr DWORD removeNameAtOnce = 0x1 | 0x2 | 0x4;

// In bytes. For a smaller file, takeOverMemory() costs more than it gains.
constexpr std::uint64_t leastLarge = 64 * 1024;

// Becomes false if the system or the disk does not know it.
constinit std::atomic<bool> knowsDispositionEx = true;

bool setMark(HANDLE opened, bool mark)
{
    DWORD flags = mark ? removeNameAtOnce : 0;
    if (knowsDispositionEx
        && SetFileInformationByHandle(opened, dispositionEx, &flags, sizeof flags)) {
        return true;
    }
    FILE_DISPOSITION_INFO info = {static_cast<BOOLEAN>(mark)};
    if (!SetFileInformationByHandle(opened, FileDispositionInfo, &info, sizeof info)) {
        return false;
    }
    knowsDispositionEx = false;
    return true;
}

void setAttributes(HANDLE opened, DWORD attributes)
{
    FILE_BASIC_INFO info = {}; // zeros: leave unchanged
    info.FileAttributes = attributes;
    SetFileInformationByHandle(opened, FileBasicInfo, &info, sizeof info);
}

// Under Wine, a removed file's memory is freed by the last process that has it open. A process gets the
// file from Wine's server with its first question about the file. If this one has it, each thread frees the
// memory of what it closes; otherwise the server would do it alone, and answer nobody meanwhile.
void takeOverMemory(HANDLE opened)
{
    FILE_STANDARD_INFO info;
    GetFileInformationByHandleEx(opened, FileStandardInfo, &info, sizeof info);
}

// What to give back to an entry that stays; 0 if it is not read-only.
DWORD toRestore(DWORD attributes)
{
    return (attributes & FILE_ATTRIBUTE_READONLY) != 0 ? attributes : 0;
}

void unmark(HANDLE opened, DWORD restored)
{
    setMark(opened, false);
    if (restored != 0) {
        setAttributes(opened, restored);
    }
}

// A read-only file cannot be removed.
bool markWritable(HANDLE opened, DWORD restored)
{
    if (restored != 0) {
        setAttributes(opened, FILE_ATTRIBUTE_NORMAL);
    }
    if (setMark(opened, true)) {
        return true;
    }
    if (restored != 0) {
        setAttributes(opened, restored);
    }
    return false;
}

} // namespace

bool couldBeRemoved(HANDLE opened, DWORD attributes)
{
    if (!markWritable(opened, toRestore(attributes))) {
        return false;
    }
    unmark(opened, toRestore(attributes));
    return true;
}

bool markForRemoval(HANDLE opened)
{
    return setMark(opened, true);
}

bool MarkedEntries::keep(Handle &opened, DWORD attributes, Kind kind)
{
    const Locked lock(m_monitor);
    if (m_count == m_entries.size()) {
        Array<Entry> larger;
        if (!larger.allocate(64 + 2 * m_count)) {
            return false;
        }
        if (m_count != 0) {
            std::memcpy(larger.data(), m_entries.data(), m_count * sizeof(Entry));
        }
        m_entries = std::move(larger);
    }
    m_entries[m_count++] = {opened.release(), toRestore(attributes), kind};
    return true;
}

bool MarkedEntries::keepFolder(Handle &opened, DWORD attributes)
{
    return keep(opened, attributes, Kind::Folder);
}

bool MarkedEntries::markFile(Handle &opened, DWORD attributes, std::uint64_t size)
{
    if (!markWritable(opened.get(), toRestore(attributes))) {
        return false;
    }
    if (keep(opened, attributes, size < leastLarge ? Kind::SmallFile : Kind::LargeFile)) {
        return true;
    }
    unmark(opened.get(), toRestore(attributes));
    return false;
}

void MarkedEntries::makeWritable()
{
    for (std::size_t i = 0; i < m_count; ++i) {
        if (m_entries[i].restored != 0) {
            setAttributes(m_entries[i].handle, FILE_ATTRIBUTE_NORMAL);
        }
    }
}

MarkedEntries::Entry *MarkedEntries::takeLast()
{
    const Locked lock(m_monitor);
    return m_count == 0 ? nullptr : &m_entries[--m_count];
}

void MarkedEntries::remove()
{
    while (const Entry *entry = takeLast()) {
        if (entry->kind == Kind::Folder) {
            setMark(entry->handle, true);
        } else if (entry->kind == Kind::LargeFile) {
            takeOverMemory(entry->handle);
        }
        CloseHandle(entry->handle);
    }
}

void MarkedEntries::release()
{
    while (const Entry *entry = takeLast()) {
        if (entry->kind != Kind::Folder) {
            unmark(entry->handle, entry->restored);
        }
        CloseHandle(entry->handle);
    }
}

} // namespace sfx
