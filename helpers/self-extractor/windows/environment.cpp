// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/environment.h"

#include "helpers/self-extractor/start/winpath.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

namespace {

bool set(const wchar_t *name, const Text &value)
{
    return SetEnvironmentVariableW(name, wide(value.data()));
}

} // namespace

bool callersFolder(Text &folder)
{
    const DWORD capacity = GetCurrentDirectoryW(0, nullptr);
    Array<char16_t> units;
    if (capacity == 0 || !units.allocate(capacity)) {
        return false;
    }
    const DWORD size = GetCurrentDirectoryW(capacity, wide(units.data()));
    return size != 0 && size < capacity && folder.assign(units.data(), size);
}

bool setProgramEnvironment(const Text &executable, const Text &application)
{
    Text executableFolder;
    Text working;
    return folderOf(executable, executableFolder) && callersFolder(working)
        && set(L"KESTRELPACK_EXE", executable) && set(L"KESTRELPACK_EXE_DIR", executableFolder)
        && set(L"KESTRELPACK_DIR", application) && set(L"KESTRELPACK_CWD", working);
}

} // namespace sfx
