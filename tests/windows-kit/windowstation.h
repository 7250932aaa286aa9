// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

#include <windows.h>

namespace kit {

// A window station and a desktop that nobody sees, as those of services.
class HiddenStation
{
public:
    HiddenStation();
    HiddenStation(const HiddenStation &) = delete;
    HiddenStation &operator=(const HiddenStation &) = delete;
    ~HiddenStation();

    bool isThere() const { return m_desktop != nullptr; }
    DWORD error() const { return m_error; }
    // For STARTUPINFOW::lpDesktop.
    const std::wstring &name() const { return m_name; }
    // Returns true if the process has a message box there.
    bool hasBox(DWORD process) const;

private:
    HWINSTA m_station = nullptr;
    HDESK m_desktop = nullptr;
    DWORD m_error = 0;
    std::wstring m_name;
};

} // namespace kit
