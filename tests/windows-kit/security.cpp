// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/security.h"

#include "tests/windows-kit/text.h"

#include <algorithm>

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

namespace kit {

namespace {

HANDLE openOwnToken()
{
    HANDLE token = nullptr;
    OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token);
    return token;
}

// "BA" becomes "S-1-5-32-544", for example.
std::string fullSid(const std::string &account)
{
    PSID sid = nullptr;
    wchar_t *text = nullptr;
    std::string full = account;
    if (ConvertStringSidToSidW(wide(account).c_str(), &sid)) {
        if (ConvertSidToStringSidW(sid, &text)) {
            full = utf8(text);
            LocalFree(text);
        }
        LocalFree(sid);
    }
    return full;
}

// The fields of one entry: type;flags;rights;object;inherited object;account.
std::vector<std::string> fieldsOf(const std::string &entry)
{
    std::vector<std::string> fields(1);
    for (const char c : entry) {
        if (c == ';') {
            fields.emplace_back();
        } else {
            fields.back() += c;
        }
    }
    return fields;
}

constexpr DWORD writingRights = FILE_WRITE_DATA | FILE_APPEND_DATA | FILE_DELETE_CHILD | DELETE
    | WRITE_DAC | WRITE_OWNER;

// The user's rights by entries for the user alone.
bool mayUserWrite(ACL *list)
{
    PSID user = nullptr;
    ConvertStringSidToSidW(wide(userSid()).c_str(), &user);
    bool may = list == nullptr;
    for (DWORD i = 0; list != nullptr && i < list->AceCount; ++i) {
        void *raw = nullptr;
        if (!GetAce(list, i, &raw)) {
            continue;
        }
        auto *entry = static_cast<ACCESS_ALLOWED_ACE *>(raw);
        if (entry->Header.AceType == ACCESS_ALLOWED_ACE_TYPE && EqualSid(&entry->SidStart, user)) {
            may = may || (entry->Mask & (writingRights | GENERIC_WRITE | GENERIC_ALL)) != 0;
        }
    }
    LocalFree(user);
    return may;
}

// The parts of the text begin with "O:", "D:" and "S:".
void readText(FolderSecurity &security)
{
    const std::string &text = security.text;
    const std::size_t list = std::min(text.find("D:"), text.size());
    const std::size_t label = std::min(text.find("S:", list), text.size());
    if (startsWith(text, "O:")) {
        security.owner = fullSid(text.substr(2, list - 2));
    }
    security.isProtected = text.compare(list, 3, "D:P") == 0;
    for (std::size_t at = text.find('(', list); at < label; at = text.find('(', at + 1)) {
        const std::string entry = text.substr(at + 1, text.find(')', at) - at - 1);
        const std::vector<std::string> fields = fieldsOf(entry);
        if (fields.size() == 6 && fields[0] == "A") {
            security.accounts.push_back(fullSid(fields[5]));
        }
    }
    security.isLabelledHigh = contains(text.substr(label), ";;;HI)");
}

} // namespace

bool isElevated()
{
    const HANDLE token = openOwnToken();
    TOKEN_ELEVATION elevation = {};
    DWORD size = 0;
    GetTokenInformation(token, TokenElevation, &elevation, sizeof elevation, &size);
    CloseHandle(token);
    return elevation.TokenIsElevated != 0;
}

Elevation elevationType()
{
    const HANDLE token = openOwnToken();
    TOKEN_ELEVATION_TYPE type = TokenElevationTypeDefault;
    DWORD size = 0;
    GetTokenInformation(token, TokenElevationType, &type, sizeof type, &size);
    CloseHandle(token);
    return type == TokenElevationTypeFull   ? Elevation::Full
        : type == TokenElevationTypeLimited ? Elevation::Limited
                                            : Elevation::None;
}

std::string userSid()
{
    const HANDLE token = openOwnToken();
    alignas(TOKEN_USER) unsigned char user[sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE] = {};
    DWORD size = 0;
    wchar_t *text = nullptr;
    std::string sid;
    if (GetTokenInformation(token, TokenUser, user, sizeof user, &size)
        && ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER *>(user)->User.Sid, &text)) {
        sid = utf8(text);
        LocalFree(text);
    }
    CloseHandle(token);
    return sid;
}

FolderSecurity securityOf(const std::wstring &folder)
{
    constexpr SECURITY_INFORMATION parts = OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION
        | LABEL_SECURITY_INFORMATION;
    FolderSecurity security;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    ACL *list = nullptr;
    std::wstring name = folder;
    security.error = GetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT, parts, nullptr, nullptr,
                                           &list, nullptr, &descriptor);
    if (security.error != ERROR_SUCCESS) {
        return security;
    }
    wchar_t *text = nullptr;
    if (ConvertSecurityDescriptorToStringSecurityDescriptorW(descriptor, SDDL_REVISION_1, parts,
                                                             &text, nullptr)) {
        security.text = utf8(text);
        LocalFree(text);
    }
    security.userMayWrite = mayUserWrite(list);
    LocalFree(descriptor);
    readText(security);
    return security;
}

} // namespace kit
