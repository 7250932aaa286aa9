// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/trust_win.h"

#include "platform/accessrules.h"
#include "platform/nativepath.h"

#include <QByteArray>
#include <QFileInfo>

#include <optional>

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

namespace {

class Handle
{
public:
    explicit Handle(HANDLE handle) : m_handle(handle) {}
    ~Handle()
    {
        if (isValid()) {
            CloseHandle(m_handle);
        }
    }
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;

    bool isValid() const { return m_handle != INVALID_HANDLE_VALUE && m_handle; }
    HANDLE get() const { return m_handle; }

private:
    const HANDLE m_handle;
};

// Memory that the system has allocated with LocalAlloc.
struct LocalMemory
{
    ~LocalMemory() { LocalFree(pointer); }
    void *pointer = nullptr;
};

QString textOf(PSID identifier)
{
    wchar_t *text = nullptr;
    if (!identifier || !ConvertSidToStringSidW(identifier, &text)) {
        return {};
    }
    const LocalMemory memory{text};
    return QString::fromWCharArray(text);
}

// Opens a file or folder to read its owner. With FILE_FLAG_OPEN_REPARSE_POINT in `flags`, a link
// itself.
HANDLE openToAsk(const QString &path, DWORD flags)
{
    const pe::NativePath name = pe::extendedPath(toNativePath(path));
    return CreateFileW(name.c_str(), READ_CONTROL | FILE_READ_ATTRIBUTES,
                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                       OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr);
}

QString ownerOf(const Handle &file)
{
    PSID owner = nullptr;
    LocalMemory descriptor;
    if (!file.isValid()
        || GetSecurityInfo(file.get(), SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, &owner, nullptr,
                           nullptr, nullptr, &descriptor.pointer)
            != ERROR_SUCCESS) {
        return {};
    }
    return textOf(owner);
}

// Nothing if the entry does not allow anything in the folder itself. Entries with a condition count
// as if it held.
std::optional<AccessEntry> allowingEntry(const ACE_HEADER &header)
{
    if (header.AceFlags & INHERIT_ONLY_ACE) {
        return std::nullopt;
    }
    if (header.AceType != ACCESS_ALLOWED_ACE_TYPE
        && header.AceType != ACCESS_ALLOWED_CALLBACK_ACE_TYPE) {
        return std::nullopt;
    }
    // Both types begin in the same way.
    const auto *entry = reinterpret_cast<const ACCESS_ALLOWED_ACE *>(&header);
    return AccessEntry{textOf(const_cast<DWORD *>(&entry->SidStart)), entry->Mask};
}

// Nothing if the system does not tell.
std::optional<FolderAccess> accessOf(const Handle &folder)
{
    PSID owner = nullptr;
    PACL list = nullptr;
    LocalMemory descriptor;
    if (GetSecurityInfo(folder.get(), SE_FILE_OBJECT,
                        OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION, &owner, nullptr,
                        &list, nullptr, &descriptor.pointer)
        != ERROR_SUCCESS) {
        return std::nullopt;
    }
    FolderAccess access{textOf(owner), !list, {}};
    for (DWORD i = 0; list && i < list->AceCount; ++i) {
        void *entry = nullptr;
        if (!GetAce(list, i, &entry)) {
            return std::nullopt;
        }
        if (const auto allowed = allowingEntry(*static_cast<const ACE_HEADER *>(entry))) {
            access.entries << *allowed;
        }
    }
    return access;
}

// FAT disks and some network drives have no owners.
bool hasOwners(const Handle &folder)
{
    DWORD flags = 0;
    return !GetVolumeInformationByHandleW(folder.get(), nullptr, 0, nullptr, nullptr, &flags,
                                          nullptr, 0)
        || (flags & FILE_PERSISTENT_ACLS);
}

bool isLink(const Handle &file)
{
    BY_HANDLE_FILE_INFORMATION information = {};
    return GetFileInformationByHandle(file.get(), &information)
        && (information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT);
}

} // namespace

QString currentUser()
{
    HANDLE token = nullptr;
    if (!OpenThreadToken(GetCurrentThread(), TOKEN_QUERY, TRUE, &token)
        && !OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token)) {
        return {};
    }
    const Handle closing(token);
    DWORD size = 0;
    GetTokenInformation(token, TokenUser, nullptr, 0, &size);
    QByteArray buffer(static_cast<qsizetype>(size), '\0');
    if (size == 0 || !GetTokenInformation(token, TokenUser, buffer.data(), size, &size)) {
        return {};
    }
    return textOf(reinterpret_cast<const TOKEN_USER *>(buffer.constData())->User.Sid);
}

bool isOwnFile(const QString &path)
{
    const QString owner = ownerOf(Handle(openToAsk(path, FILE_FLAG_OPEN_REPARSE_POINT)));
    return !owner.isEmpty() && owner == currentUser();
}

// The helpers have fixed names, so in a directory like C:\Windows\Temp, which is the temporary
// directory of services, anybody could create a program with such a name.
QString untrustedFileReason(const QString &path)
{
    const Handle itself(openToAsk(path, FILE_FLAG_OPEN_REPARSE_POINT));
    if (!itself.isValid()
        && (GetLastError() == ERROR_FILE_NOT_FOUND || GetLastError() == ERROR_PATH_NOT_FOUND)) {
        return {};
    }
    const Handle folder(openToAsk(QFileInfo(path).absolutePath(), 0));
    if (folder.isValid() && !hasOwners(folder)) {
        return {};
    }
    const QString user = currentUser();
    // A folder that cannot be read counts as one where everybody can write.
    const FolderAccess access
        = (folder.isValid() ? accessOf(folder) : std::nullopt).value_or(FolderAccess{{}, true, {}});
    if (!isUsable(access, ownerOf(itself), user)) {
        return QStringLiteral("%1 belongs to another user").arg(path);
    }
    if (isLink(itself) && !isUsable(access, ownerOf(Handle(openToAsk(path, 0))), user)) {
        return QStringLiteral("%1 is a link to a file of another user").arg(path);
    }
    return {};
}
