// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/folderlisting.h"

#include <winternl.h>

// MinGW's winternl.h does not declare it (Microsoft, ntifs.h).
extern "C" NTSYSAPI NTSTATUS NTAPI NtQueryDirectoryFile(HANDLE, HANDLE, PIO_APC_ROUTINE, PVOID,
                                                        PIO_STATUS_BLOCK, PVOID, ULONG,
                                                        FILE_INFORMATION_CLASS, BOOLEAN,
                                                        PUNICODE_STRING, BOOLEAN);

namespace sfx {

bool FolderListing::advance()
{
    if (m_entry != nullptr && m_entry->NextEntryOffset != 0) {
        const auto *bytes = reinterpret_cast<const unsigned char *>(m_entry);
        m_entry = reinterpret_cast<const FILE_FULL_DIR_INFO *>(bytes + m_entry->NextEntryOffset);
        return true;
    }
    // This class of information has no file ids and short names, which some network drives do not
    // know. It is asked from the system itself: Wine 8 has no Windows function for it.
    IO_STATUS_BLOCK result = {};
    const BOOLEAN restarts = m_entry == nullptr;
    m_entry = reinterpret_cast<const FILE_FULL_DIR_INFO *>(m_buffer);
    return NtQueryDirectoryFile(m_folder, nullptr, nullptr, nullptr, &result, m_buffer,
                                sizeof m_buffer, FileFullDirectoryInformation, FALSE, nullptr,
                                restarts)
        >= 0;
}

bool FolderListing::next()
{
    while (advance()) {
        const ListedEntry found = entry();
        const bool isDots = found.name[0] == u'.'
            && (found.nameSize == 1 || (found.nameSize == 2 && found.name[1] == u'.'));
        if (!isDots) {
            return true;
        }
    }
    return false;
}

ListedEntry FolderListing::entry() const
{
    return {m_folder,
            reinterpret_cast<const char16_t *>(m_entry->FileName),
            m_entry->FileNameLength / sizeof(char16_t),
            m_entry->FileAttributes,
            static_cast<std::uint64_t>(m_entry->EndOfFile.QuadPart),
            static_cast<std::uint64_t>(m_entry->LastWriteTime.QuadPart)};
}

} // namespace sfx
