// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/systemerror.h"

#include <algorithm>
#include <iterator>

#include <windows.h>

namespace pe {

Error systemError(ErrorKind kind, const char *what)
{
    const DWORD code = GetLastError();
    wchar_t text[256];
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS
                                            | FORMAT_MESSAGE_MAX_WIDTH_MASK,
                                        nullptr, code, 0, text, static_cast<DWORD>(std::size(text)),
                                        nullptr);
    char narrow[1024];
    const int count = WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(length), narrow,
                                          static_cast<int>(sizeof narrow), nullptr, nullptr);
    std::string system(narrow, static_cast<std::size_t>(std::max(count, 0)));
    while (!system.empty() && (system.back() == ' ' || system.back() == '.')) {
        system.pop_back();
    }
    return {kind, what, system.empty() ? "error " + std::to_string(code) : system};
}

} // namespace pe
