// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/windows/win32.h"

#include <cstring>

namespace sfx {

// A library of the system folder. It is loaded here and stays loaded.
class SystemLibrary
{
public:
    explicit SystemLibrary(const wchar_t *name)
        : m_module(LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32))
    {
    }

    // Returns nullptr if this Windows has no such function.
    template <typename Function>
    Function function(const char *name) const
    {
        Function result = nullptr;
        if (m_module != nullptr) {
            const FARPROC address = GetProcAddress(m_module, name);
            static_assert(sizeof result == sizeof address);
            std::memcpy(&result, &address, sizeof result);
        }
        return result;
    }

private:
    HMODULE m_module;
};

} // namespace sfx
