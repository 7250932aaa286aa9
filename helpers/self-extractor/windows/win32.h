// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <utility>

namespace sfx {

// On Windows wchar_t is another name for a UTF-16 unit.
inline const wchar_t *wide(const char16_t *text)
{
    return reinterpret_cast<const wchar_t *>(text);
}

inline wchar_t *wide(char16_t *text)
{
    return reinterpret_cast<wchar_t *>(text);
}

// Owns a kernel handle; null and INVALID_HANDLE_VALUE both mean none.
class Handle
{
public:
    explicit Handle(HANDLE handle = nullptr)
        : m_handle(handle == INVALID_HANDLE_VALUE ? nullptr : handle)
    {
    }
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;
    ~Handle() { reset(); }

    void reset(HANDLE handle = nullptr)
    {
        if (m_handle != nullptr) {
            CloseHandle(m_handle);
        }
        m_handle = handle == INVALID_HANDLE_VALUE ? nullptr : handle;
    }
    HANDLE get() const { return m_handle; }
    // The caller closes it.
    HANDLE release() { return std::exchange(m_handle, nullptr); }
    explicit operator bool() const { return m_handle != nullptr; }

private:
    HANDLE m_handle;
};

} // namespace sfx
