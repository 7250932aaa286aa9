// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/text.h"

#include <cstdio>

#include <windows.h>

namespace kit {

std::string utf8(const std::wstring &text)
{
    const int size = static_cast<int>(text.size());
    const int bytes
        = WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(bytes), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), size, result.data(), bytes, nullptr, nullptr);
    return result;
}

std::wstring wide(const std::string &text)
{
    const int size = static_cast<int>(text.size());
    const int units = MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0);
    std::wstring result(static_cast<std::size_t>(units), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), size, result.data(), units);
    return result;
}

std::string oneLine(const std::string &text, std::size_t most)
{
    std::string line;
    for (const char c : text) {
        const bool isBlank = c == ' ' || c == '\n' || c == '\t' || c == '\r';
        if (!isBlank) {
            line += static_cast<unsigned char>(c) < ' ' ? '?' : c;
        } else if (!line.empty() && line.back() != ' ') {
            line += ' ';
        }
    }
    if (line.size() > most) {
        // Not in the middle of a character of several bytes.
        while (most > 0 && (static_cast<unsigned char>(line[most]) & 0xc0) == 0x80) {
            --most;
        }
        line = line.substr(0, most) + "...";
    }
    while (!line.empty() && line.back() == ' ') {
        line.pop_back();
    }
    return line;
}

std::string hex(std::uint32_t value)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(value));
    return text;
}

std::string systemText(unsigned long error)
{
    wchar_t buffer[512];
    const DWORD size = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                      nullptr, error, 0, buffer, ARRAYSIZE(buffer), nullptr);
    return std::to_string(error) + " (" + oneLine(utf8(std::wstring(buffer, size))) + ")";
}

bool startsWith(const std::string &text, const std::string &beginning)
{
    return text.compare(0, beginning.size(), beginning) == 0;
}

bool contains(const std::string &text, const std::string &part)
{
    return text.find(part) != std::string::npos;
}

} // namespace kit
