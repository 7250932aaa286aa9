// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

#include <windows.h>

namespace kit {

// A token with fewer rights than this process has.
class Token
{
public:
    // As a sandbox has it: a file can be opened only if the user and RESTRICTED or a group of all
    // users may open it.
    static Token ofSandbox();
    // As the user's programs have it that were not started as administrator.
    static Token ofMediumProgram();

    Token(Token &&other) noexcept;
    Token &operator=(Token &&) = delete;
    ~Token();

    HANDLE get() const { return m_token; }
    const std::string &error() const { return m_error; } // empty if everything worked

private:
    Token() = default;
    void fail(const char *function);

    HANDLE m_token = nullptr;
    std::string m_error;
};

// While it lives, this thread has the rights of a token.
class RightsOfThread
{
public:
    explicit RightsOfThread(const Token &token);
    RightsOfThread(const RightsOfThread &) = delete;
    RightsOfThread &operator=(const RightsOfThread &) = delete;
    ~RightsOfThread();

    bool isThere() const { return m_isThere; }

private:
    bool m_isThere = false;
};

} // namespace kit
