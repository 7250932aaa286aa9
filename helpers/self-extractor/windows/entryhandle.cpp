// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/entryhandle.h"

#include "helpers/self-extractor/windows/entryopening.h"

namespace sfx {

namespace {

// The system's own form of an extended path differs only in the second unit.
[[nodiscard]] bool toSystemPath(const Text &path, Text &systemPath)
{
    return path.size() < UNICODE_STRING_MAX_CHARS && systemPath.append(u"\\?", 2)
        && systemPath.append(path.data() + 2, path.size() - 2);
}

// GetFileInformationByHandle() would also ask for the disk's serial number: another call of the
// system, and under Wine a conversation with another process.
bool isOfKind(HANDLE opened, DWORD kind)
{
    constexpr DWORD kinds = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    FILE_BASIC_INFO info;
    return GetFileInformationByHandleEx(opened, FileBasicInfo, &info, sizeof info)
        && (info.FileAttributes & kinds) == kind;
}

} // namespace

// Only the system's own interface opens relative to a folder's handle, and only it returns the
// handle of a new folder.
NTSTATUS openByName(const EntryName &name, const Way &way, void *security, Handle &opened)
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

EntryUse checkedUse(NTSTATUS status, Handle &opened, DWORD kind)
{
    const EntryUse use = useByOpening(static_cast<std::uint32_t>(status));
    if (use == EntryUse::Free && !isOfKind(opened.get(), kind)) {
        opened.reset();
        return EntryUse::NotForUs;
    }
    return use;
}

bool createFolder(const Text &path, SECURITY_ATTRIBUTES *security, Handle &folder)
{
    Text systemPath;
    if (!toSystemPath(path, systemPath)) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return false;
    }
    const Way way = {listing, shareContent, FILE_CREATE, neverFollow | FILE_DIRECTORY_FILE};
    const NTSTATUS status
        = openByName({nullptr, systemPath.data(), systemPath.size()}, way,
                     security != nullptr ? security->lpSecurityDescriptor : nullptr, folder);
    SetLastError(RtlNtStatusToDosError(status));
    return status >= 0;
}

EntryUse openFolder(const Text &path, Handle &folder, ACCESS_MASK access)
{
    Text systemPath;
    if (!toSystemPath(path, systemPath)) {
        return EntryUse::InUse;
    }
    const Way way = {access, shareContent, FILE_OPEN, neverFollow | FILE_DIRECTORY_FILE};
    const NTSTATUS status
        = openByName({nullptr, systemPath.data(), systemPath.size()}, way, nullptr, folder);
    return checkedUse(status, folder, FILE_ATTRIBUTE_DIRECTORY);
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
    const NTSTATUS status
        = openByName({entry.folder, entry.name, entry.nameSize}, way, nullptr, opened);
    if (!folder && !entry.isLink()) {
        // Whatever file has this name is the entry to remove.
        return useByOpening(static_cast<std::uint32_t>(status));
    }
    constexpr DWORD kinds = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    return checkedUse(status, opened, entry.attributes & kinds);
}

} // namespace sfx
