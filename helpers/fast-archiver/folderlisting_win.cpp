// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/folderlisting.h"

#include "helpers/pe/systemerror.h"

#include <windows.h>

namespace fast {

namespace {

std::uint64_t numberOf(DWORD high, DWORD low)
{
    return (std::uint64_t{high} << 32) | low;
}

bool isLink(const WIN32_FIND_DATAW &found)
{
    return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0
        && (found.dwReserved0 == IO_REPARSE_TAG_SYMLINK
            || found.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
}

Failure cannotRead(const pe::NativePath &path, const char *what)
{
    return failureOf(path, pe::systemError(pe::ErrorKind::CannotRead, what));
}

// Replaces what is known of the link at `path` by what is known of the file that it names.
bool followLink(const pe::NativePath &path, SourceFile &file)
{
    const HANDLE handle = CreateFileW(path.c_str(), 0,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return false;
    }
    BY_HANDLE_FILE_INFORMATION information = {};
    const bool isKnown = GetFileInformationByHandle(handle, &information) != 0;
    CloseHandle(handle);
    file.attributes = information.dwFileAttributes;
    file.modified = numberOf(information.ftLastWriteTime.dwHighDateTime,
                             information.ftLastWriteTime.dwLowDateTime);
    file.size = numberOf(information.nFileSizeHigh, information.nFileSizeLow);
    return isKnown;
}

} // namespace

struct FolderListing::SystemEntry
{
    WIN32_FIND_DATAW found;
};

FolderListing::FolderListing(const pe::NativePath &root, const std::atomic<bool> &stopped)
    : m_root(pe::extendedPath(root)) // in the form without a length limit
    , m_stopped(stopped)
{
}

Outcome<Done> FolderListing::list(const SourceFile *folder)
{
    const pe::NativePath whole = m_root + (folder ? folder->place + L'\\' : pe::NativePath());
    SystemEntry entry = {};
    const HANDLE search = FindFirstFileExW((whole + L'*').c_str(), FindExInfoBasic, &entry.found,
                                           FindExSearchNameMatch, nullptr,
                                           FIND_FIRST_EX_LARGE_FETCH);
    if (search == INVALID_HANDLE_VALUE) {
        const bool isEmptyDrive = GetLastError() == ERROR_FILE_NOT_FOUND;
        return isEmptyDrive ? Outcome<Done>(Done{}) : cannotRead(whole, "cannot be listed");
    }
    Outcome<Done> added = Done{};
    do {
        const std::wstring name = entry.found.cFileName;
        if (m_stopped) {
            added = Failure{ExitStatus::Interrupted, {}};
        } else if (name != L"." && name != L"..") {
            added = add(folder, entry);
        }
    } while (!added.hasFailed() && FindNextFileW(search, &entry.found) != 0);
    if (!added.hasFailed() && GetLastError() != ERROR_NO_MORE_FILES) {
        added = cannotRead(whole, "cannot be listed");
    }
    FindClose(search);
    return added;
}

Outcome<Done> FolderListing::add(const SourceFile *folder, const SystemEntry &entry)
{
    const WIN32_FIND_DATAW &found = entry.found;
    const std::wstring name = found.cFileName;
    const std::u16string units(name.begin(), name.end());
    SourceFile file;
    file.place = folder ? folder->place + L'\\' + name : name;
    file.path = folder ? folder->path + u'/' + units : units;
    file.attributes = found.dwFileAttributes;
    file.modified
        = numberOf(found.ftLastWriteTime.dwHighDateTime, found.ftLastWriteTime.dwLowDateTime);
    file.size = numberOf(found.nFileSizeHigh, found.nFileSizeLow);
    if (isLink(found) && !followLink(m_root + file.place, file)) {
        return cannotRead(m_root + file.place, "cannot be read");
    }
    file.isFolder = (file.attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (file.isFolder) {
        file.size = 0;
    }
    m_files.push_back(std::move(file));
    return Done{};
}

} // namespace fast
