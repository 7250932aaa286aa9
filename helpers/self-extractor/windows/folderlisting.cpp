// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/folderlisting.h"

namespace sfx {

bool FolderListing::open(const Text &path)
{
    // Not shared for deleting, so that nobody can rename the folder.
    m_folder.reset(CreateFileW(wide(path.data()), FILE_LIST_DIRECTORY | READ_CONTROL,
                               FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                               FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    m_entry = nullptr;
    BY_HANDLE_FILE_INFORMATION info = {};
    if (!m_folder || !GetFileInformationByHandle(m_folder.get(), &info)
        || (info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0
        || (info.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
        m_folder.reset();
        return false;
    }
    return true;
}

bool FolderListing::advance()
{
    if (m_entry != nullptr && m_entry->NextEntryOffset != 0) {
        const auto *bytes = reinterpret_cast<const unsigned char *>(m_entry);
        m_entry = reinterpret_cast<const FILE_ID_BOTH_DIR_INFO *>(bytes + m_entry->NextEntryOffset);
        return true;
    }
    m_entry = reinterpret_cast<const FILE_ID_BOTH_DIR_INFO *>(m_buffer);
    return GetFileInformationByHandleEx(m_folder.get(), FileIdBothDirectoryInfo, m_buffer,
                                        sizeof m_buffer);
}

bool FolderListing::next()
{
    while (advance()) {
        const bool isDots = name()[0] == u'.'
            && (nameSize() == 1 || (nameSize() == 2 && name()[1] == u'.'));
        if (!isDots) {
            return true;
        }
    }
    return false;
}

} // namespace sfx
