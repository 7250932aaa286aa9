// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/temporaryfolder.h"

#include "helpers/self-extractor/windows/systemlibrary.h"

namespace sfx {

namespace {

constexpr DWORD pathCapacity = 32768;

} // namespace

bool findTemporaryFolder(Text &folder)
{
    using GetTempPathFunction = DWORD(WINAPI *)(DWORD, LPWSTR);
    Array<char16_t> raw;
    Array<char16_t> full;
    if (!raw.allocate(pathCapacity) || !full.allocate(pathCapacity)) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return false;
    }
    // The newer function, if Windows has it, gives services a separate folder.
    auto getTempPath
        = SystemLibrary(L"kernel32.dll").function<GetTempPathFunction>("GetTempPath2W");
    if (getTempPath == nullptr) {
        getTempPath = GetTempPathW;
    }
    const DWORD rawSize = getTempPath(pathCapacity, wide(raw.data()));
    if (rawSize == 0 || rawSize >= pathCapacity) {
        return false;
    }
    const DWORD size = GetFullPathNameW(wide(raw.data()), pathCapacity, wide(full.data()), nullptr);
    if (size == 0 || size >= pathCapacity || !folder.assign(full.data(), size)) {
        return false;
    }
    return folder.data()[size - 1] == u'\\' || folder.append(u"\\");
}

} // namespace sfx
