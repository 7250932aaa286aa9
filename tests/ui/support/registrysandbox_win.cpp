// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include <QtGlobal>

#include "tests/ui/support/registrysandbox.h"

#include <string>

#include <windows.h>

namespace {

std::wstring branchName()
{
    return L"Software\\KestrelpackTests\\" + std::to_wstring(GetCurrentProcessId());
}

} // namespace

RegistrySandbox::RegistrySandbox()
{
    HKEY branch = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, branchName().c_str(), 0, nullptr,
                        REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr, &branch, nullptr)
            != ERROR_SUCCESS
        || RegOverridePredefKey(HKEY_CURRENT_USER, branch) != ERROR_SUCCESS) {
        qFatal("the registry branch could not be made");
    }
    RegCloseKey(branch);
}

RegistrySandbox::~RegistrySandbox()
{
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegDeleteTreeW(HKEY_CURRENT_USER, branchName().c_str());
}
