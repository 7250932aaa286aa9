// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/diskspace.h"

#include "helpers/self-extractor/start/filesystem.h"
#include "helpers/self-extractor/start/winpath.h"

namespace sfx {

namespace {

// winerror.h: the user's share of the disk is used up. MinGW's headers do not define it.
constexpr DWORD quotaExceeded = 1295;

} // namespace

bool isDiskFull(DWORD error)
{
    return error == ERROR_DISK_FULL || error == ERROR_HANDLE_DISK_FULL || error == quotaExceeded;
}

bool diskHoldsFileOf(HANDLE file, std::uint64_t size)
{
    wchar_t name[MAX_PATH + 1];
    return !GetVolumeInformationByHandleW(file, nullptr, 0, nullptr, nullptr, nullptr, name,
                                          ARRAYSIZE(name))
        || holdsFileOf(reinterpret_cast<const char16_t *>(name), size);
}

std::uint64_t missingSpace(const Text &folder, std::uint64_t needed)
{
    Text extended;
    ULARGE_INTEGER available = {};
    if (!toExtendedPath(folder, extended)
        || !GetDiskFreeSpaceExW(wide(extended.data()), &available, nullptr, nullptr)
        || available.QuadPart >= needed) {
        return 0;
    }
    return needed - available.QuadPart;
}

} // namespace sfx
