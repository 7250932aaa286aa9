// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/token.h"

#include "tests/windows-kit/text.h"

#include <utility>
#include <vector>

#include <sddl.h>

namespace kit {

namespace {

class Handle
{
public:
    Handle() = default;
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;
    ~Handle()
    {
        if (m_handle != nullptr) {
            CloseHandle(m_handle);
        }
    }
    HANDLE get() const { return m_handle; }
    HANDLE *address() { return &m_handle; }

private:
    HANDLE m_handle = nullptr;
};

class Sid
{
public:
    explicit Sid(const wchar_t *text) { ConvertStringSidToSidW(text, &m_sid); }
    Sid(const Sid &) = delete;
    Sid &operator=(const Sid &) = delete;
    ~Sid() { LocalFree(m_sid); }
    PSID get() const { return m_sid; }

private:
    PSID m_sid = nullptr;
};

// The rights that CreateRestrictedToken and CreateProcessAsUserW need. The new token's handle has the
// same ones.
constexpr DWORD access = TOKEN_QUERY | TOKEN_DUPLICATE | TOKEN_ASSIGN_PRIMARY
    | TOKEN_ADJUST_DEFAULT;

} // namespace

Token::Token(Token &&other) noexcept
    : m_token(std::exchange(other.m_token, nullptr))
    , m_error(std::move(other.m_error))
{
}

Token::~Token()
{
    if (m_token != nullptr) {
        CloseHandle(m_token);
    }
}

void Token::fail(const char *function)
{
    m_error = std::string(function) + ": " + systemText(GetLastError());
}

// The session's own identifier gives access to the desktop.
Token Token::ofSandbox()
{
    const Sid everyone(L"S-1-1-0");
    const Sid authenticated(L"S-1-5-11");
    const Sid restricted(L"S-1-5-12");
    const Sid users(L"S-1-5-32-545");
    std::vector<SID_AND_ATTRIBUTES> sids
        = {{everyone.get(), 0}, {authenticated.get(), 0}, {restricted.get(), 0}, {users.get(), 0}};
    alignas(TOKEN_GROUPS) unsigned char session[sizeof(TOKEN_GROUPS) + SECURITY_MAX_SID_SIZE] = {};
    Token token;
    Handle own;
    DWORD size = 0;
    if (!OpenProcessToken(GetCurrentProcess(), access, own.address())) {
        token.fail("OpenProcessToken");
        return token;
    }
    auto *groups = reinterpret_cast<TOKEN_GROUPS *>(session);
    if (GetTokenInformation(own.get(), TokenLogonSid, session, sizeof session, &size)
        && groups->GroupCount == 1) {
        sids.push_back({groups->Groups[0].Sid, 0});
    }
    if (!CreateRestrictedToken(own.get(), DISABLE_MAX_PRIVILEGE, 0, nullptr, 0, nullptr,
                               static_cast<DWORD>(sids.size()), sids.data(), &token.m_token)) {
        token.m_token = nullptr;
        token.fail("CreateRestrictedToken");
    }
    return token;
}

// LUA_TOKEN takes the privileges and the administrators' group away; the integrity level stays.
Token Token::ofMediumProgram()
{
    const Sid medium(L"S-1-16-8192");
    Token token;
    Handle own;
    if (!OpenProcessToken(GetCurrentProcess(), access, own.address())
        || !CreateRestrictedToken(own.get(), LUA_TOKEN, 0, nullptr, 0, nullptr, 0, nullptr,
                                  &token.m_token)) {
        token.m_token = nullptr;
        token.fail("CreateRestrictedToken");
        return token;
    }
    TOKEN_MANDATORY_LABEL label = {{medium.get(), SE_GROUP_INTEGRITY}};
    if (!SetTokenInformation(token.m_token, TokenIntegrityLevel, &label,
                             sizeof label + GetLengthSid(medium.get()))) {
        token.fail("SetTokenInformation");
    }
    return token;
}

RightsOfThread::RightsOfThread(const Token &token)
{
    Handle copy;
    m_isThere = DuplicateTokenEx(token.get(), TOKEN_QUERY | TOKEN_IMPERSONATE, nullptr,
                                 SecurityImpersonation, TokenImpersonation, copy.address())
        && SetThreadToken(nullptr, copy.get());
}

RightsOfThread::~RightsOfThread()
{
    RevertToSelf();
}

} // namespace kit
