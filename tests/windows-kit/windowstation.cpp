// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/windowstation.h"

#include <cwchar>

namespace kit {

namespace {

std::wstring nameOf(HANDLE object)
{
    wchar_t name[256] = L"";
    DWORD size = 0;
    GetUserObjectInformationW(object, UOI_NAME, name, sizeof name - sizeof *name, &size);
    return name;
}

struct Search
{
    DWORD process;
    bool found;
};

BOOL CALLBACK look(HWND window, LPARAM data)
{
    auto *search = reinterpret_cast<Search *>(data);
    DWORD owner = 0;
    wchar_t name[32] = L"";
    GetWindowThreadProcessId(window, &owner);
    GetClassNameW(window, name, ARRAYSIZE(name));
    search->found = owner == search->process && std::wcscmp(name, L"#32770") == 0;
    return !search->found;
}

} // namespace

// A desktop belongs to the station of the process that creates it. Only administrators may choose
// the station's name.
HiddenStation::HiddenStation()
{
    const HWINSTA own = GetProcessWindowStation();
    m_station = CreateWindowStationW(nullptr, 0, WINSTA_ALL_ACCESS, nullptr);
    if (m_station != nullptr && SetProcessWindowStation(m_station)) {
        m_desktop = CreateDesktopW(L"Default", nullptr, nullptr, 0, GENERIC_ALL, nullptr);
        m_error = GetLastError();
        SetProcessWindowStation(own);
        m_name = nameOf(m_station) + L"\\Default";
        return;
    }
    m_error = GetLastError();
}

HiddenStation::~HiddenStation()
{
    if (m_desktop != nullptr) {
        CloseDesktop(m_desktop);
    }
    if (m_station != nullptr) {
        CloseWindowStation(m_station);
    }
}

bool HiddenStation::hasBox(DWORD process) const
{
    Search search = {process, false};
    EnumDesktopWindows(m_desktop, look, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

} // namespace kit
