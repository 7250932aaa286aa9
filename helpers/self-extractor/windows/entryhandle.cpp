// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/entryhandle.h"

#include <winternl.h>

namespace sfx {

namespace {

constexpr ACCESS_MASK listing = FILE_LIST_DIRECTORY | READ_CONTROL;
constexpr ULONG shareContent = FILE_SHARE_READ | FILE_SHARE_WRITE;
constexpr ULONG neverFollow = FILE_SYNCHRONOUS_IO_NONALERT | FILE_OPEN_REPARSE_POINT;

struct Name
{
    HANDLE folder; // null: `text` is a path of the system itself (`\??\C:\...`)
    const char16_t *text;
    std::size_t size;
};

struct Way
{
    ACCESS_MASK access;
    ULONG sharing;
    ULONG disposition;
    ULONG options;
};

// Only the system's own interface opens relative to a folder's handle, and only it returns the
// handle of a new folder.
NTSTATUS open(const Name &name, const Way &way, void *security, Handle &opened)
{
    const auto bytes = static_cast<USHORT>(name.size * sizeof(char16_t));
    UNICODE_STRING text = {bytes, bytes, wide(const_cast<char16_t *>(name.text))};
    OBJECT_ATTRIBUTES attributes;
    // The name of an entry is exact, as it was listed.
    const ULONG ignoreCase = name.folder == nullptr ? OBJ_CASE_INSENSITIVE : 0;
    InitializeObjectAttributes(&attributes, &text, ignoreCase, name.folder, security);
    IO_STATUS_BLOCK result = {};
    HANDLE handle = nullptr;
    const NTSTATUS status = NtCreateFile(&handle, way.access | SYNCHRONIZE | FILE_READ_ATTRIBUTES,
                                         &attributes, &result, nullptr, FILE_ATTRIBUTE_NORMAL,
                                         way.sharing, way.disposition, way.options, nullptr, 0);
    opened.reset(status >= 0 ? handle : nullptr);
    return status;
}

// The system's own form of an extended path differs only in the second unit.
[[nodiscard]] bool toSystemPath(const Text &path, Text &systemPath)
{
    return path.size() < UNICODE_STRING_MAX_CHARS && systemPath.append(u"\\?", 2)
        && systemPath.append(path.data() + 2, path.size() - 2);
}

bool isOfKind(HANDLE opened, DWORD kind)
{
    constexpr DWORD kinds = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    BY_HANDLE_FILE_INFORMATION info = {};
    return GetFileInformationByHandle(opened, &info) && (info.dwFileAttributes & kinds) == kind;
}

// Returns whether the status is a success.
bool setReason(NTSTATUS status)
{
    SetLastError(RtlNtStatusToDosError(status));
    return status >= 0;
}

EntryUse checkedUse(NTSTATUS status, Handle &opened, DWORD kind)
{
    setReason(status);
    const EntryUse use = useByOpening(static_cast<std::uint32_t>(status));
    if (use == EntryUse::Free && !isOfKind(opened.get(), kind)) {
        opened.reset();
        SetLastError(ERROR_DIRECTORY);
        return EntryUse::NotForUs;
    }
    return use;
}

EntryUse openFolderWith(ACCESS_MASK access, const Text &path, Handle &folder)
{
    Text systemPath;
    if (!toSystemPath(path, systemPath)) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return EntryUse::InUse;
    }
    const Way way = {access, shareContent, FILE_OPEN, neverFollow | FILE_DIRECTORY_FILE};
    const NTSTATUS status
        = open({nullptr, systemPath.data(), systemPath.size()}, way, nullptr, folder);
    return checkedUse(status, folder, FILE_ATTRIBUTE_DIRECTORY);
}

} // namespace

bool createFolder(const Text &path, SECURITY_ATTRIBUTES *security, Handle &folder)
{
    Text systemPath;
    if (!toSystemPath(path, systemPath)) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return false;
    }
    const Way way = {listing, shareContent, FILE_CREATE, neverFollow | FILE_DIRECTORY_FILE};
    const NTSTATUS status = open({nullptr, systemPath.data(), systemPath.size()}, way,
                                 security != nullptr ? security->lpSecurityDescriptor : nullptr,
                                 folder);
    return setReason(status);
}

bool guardFolder(const Text &path, Handle &folder)
{
    return openFolderWith(listing, path, folder) == EntryUse::Free;
}

bool createFile(HANDLE folder, const char16_t *name, std::size_t nameSize, Handle &file)
{
    const Way way = {FILE_GENERIC_WRITE, 0, FILE_CREATE,
                     FILE_SYNCHRONOUS_IO_NONALERT | FILE_NON_DIRECTORY_FILE};
    return setReason(open({folder, name, nameSize}, way, nullptr, file));
}

EntryUse openFolder(const Text &path, Handle &folder)
{
    return openFolderWith(listing | DELETE, path, folder);
}

EntryUse openEntry(const ListedEntry &entry, Handle &opened)
{
    const bool folder = entry.isFolder();
    Way way = {DELETE, shareContent | FILE_SHARE_DELETE, FILE_OPEN, neverFollow};
    if (folder) {
        way = {listing | DELETE, shareContent, FILE_OPEN, neverFollow | FILE_DIRECTORY_FILE};
    } else if (!entry.isLink()) {
        way.options |= FILE_NON_DIRECTORY_FILE;
    }
    if (entry.isReadOnly()) {
        way.access |= FILE_WRITE_ATTRIBUTES;
    }
    const NTSTATUS status = open({entry.folder, entry.name, entry.nameSize}, way, nullptr, opened);
    if (!folder && !entry.isLink()) {
        // Whatever file has this name is the entry to remove.
        return useByOpening(static_cast<std::uint32_t>(status));
    }
    constexpr DWORD kinds = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    return checkedUse(status, opened, entry.attributes & kinds);
}

EntryUse openToRead(const ListedEntry &entry, Handle &opened)
{
    constexpr ULONG shareAll = shareContent | FILE_SHARE_DELETE;
    const bool folder = entry.isFolder();
    const Way way = folder
        ? Way{listing, shareAll, FILE_OPEN, neverFollow | FILE_DIRECTORY_FILE}
        : Way{FILE_READ_DATA, shareAll, FILE_OPEN, neverFollow | FILE_NON_DIRECTORY_FILE};
    const NTSTATUS status = open({entry.folder, entry.name, entry.nameSize}, way, nullptr, opened);
    return checkedUse(status, opened, folder ? FILE_ATTRIBUTE_DIRECTORY : 0);
}

} // namespace sfx
