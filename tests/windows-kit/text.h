// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string>

// Texts: UTF-16 for Windows, UTF-8 for the report.
namespace kit {

std::string utf8(const std::wstring &text);
std::wstring wide(const std::string &text);

// The same text in one line: line ends and tabs become blanks, other control characters "?". A long
// text is cut.
std::string oneLine(const std::string &text, std::size_t most = 600);

std::string hex(std::uint32_t value);        // "0x4B5000CA"
std::string systemText(unsigned long error); // "5 (Access is denied.)"

bool startsWith(const std::string &text, const std::string &beginning);
bool contains(const std::string &text, const std::string &part);

} // namespace kit
