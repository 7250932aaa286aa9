// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/useronly.h"

#include "cli/useronlyrights.h"
#include "platform/nativepath.h"
#include "platform/trust_win.h"

#include <windows.h>

#include <sddl.h>

namespace {

DWORD integrityOf(HANDLE token)
{
    alignas(void *) unsigned char data[sizeof(TOKEN_MANDATORY_LABEL) + SECURITY_MAX_SID_SIZE] = {};
    DWORD size = 0;
    if (!GetTokenInformation(token, TokenIntegrityLevel, data, sizeof data, &size)) {
        return 0;
    }
    const PSID sid = reinterpret_cast<const TOKEN_MANDATORY_LABEL *>(data)->Label.Sid;
    const UCHAR count = *GetSidSubAuthorityCount(sid);
    return count == 0 ? 0 : *GetSidSubAuthority(sid, DWORD{count} - 1);
}

// True for a process that an administrator has elevated.
bool isElevated()
{
    HANDLE token = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token)) {
        return false;
    }
    TOKEN_ELEVATION_TYPE type = TokenElevationTypeDefault;
    DWORD size = 0;
    const bool isElevated
        = GetTokenInformation(token, TokenElevationType, &type, sizeof type, &size)
        && type == TokenElevationTypeFull && integrityOf(token) >= SECURITY_MANDATORY_HIGH_RID;
    CloseHandle(token);
    return isElevated;
}

} // namespace

bool makeUserOnlyDirectory(const QString &path, QString &error)
{
    const std::wstring rights = userOnlyRights(currentUser(), isElevated()).toStdWString();
    SECURITY_ATTRIBUTES attributes = {sizeof attributes, nullptr, FALSE};
    BOOL isMade
        = ConvertStringSecurityDescriptorToSecurityDescriptorW(rights.c_str(), SDDL_REVISION_1,
                                                               &attributes.lpSecurityDescriptor,
                                                               nullptr);
    if (isMade) {
        isMade = CreateDirectoryW(pe::extendedPath(toNativePath(path)).c_str(), &attributes);
    }
    if (!isMade) {
        error = qt_error_string(static_cast<int>(GetLastError()));
    }
    LocalFree(attributes.lpSecurityDescriptor);
    return isMade;
}

bool isOwnDirectory(const QString &path)
{
    const DWORD attributes = GetFileAttributesW(pe::extendedPath(toNativePath(path)).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY)
        && !(attributes & FILE_ATTRIBUTE_REPARSE_POINT) && isOwnFile(path);
}

// The function of the C library takes bytes in the process's code page, which before Windows 10
// 1903 cannot express every path.
void setTemporaryDirectory(const QString &path)
{
    const pe::NativePath native = toNativePath(QString(path).replace('/', '\\'));
    for (const wchar_t *variable : {L"TMP", L"TEMP", L"TMPDIR"}) {
        SetEnvironmentVariableW(variable, native.c_str());
    }
}
