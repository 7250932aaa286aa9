// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/nativepath.h"

#include <algorithm>
#include <optional>

#include <windows.h>

namespace pe {

namespace {

constexpr DWORD maxPathLength = 32767; // with the final zero

// Opens a file or folder to ask about it, also while others use it. Returns INVALID_HANDLE_VALUE if it
// cannot be opened.
HANDLE openToAsk(const NativePath &path)
{
    return CreateFileW(extendedPath(path).c_str(), 0,
                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                       OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

std::optional<BY_HANDLE_FILE_INFORMATION> informationOf(const NativePath &path)
{
    const HANDLE handle = openToAsk(path);
    if (handle == INVALID_HANDLE_VALUE) {
        return std::nullopt;
    }
    BY_HANDLE_FILE_INFORMATION information = {};
    const bool known = GetFileInformationByHandle(handle, &information) != 0;
    CloseHandle(handle);
    return known ? std::optional(information) : std::nullopt;
}

} // namespace

std::string utf8Of(const NativePath &path)
{
    const int length = static_cast<int>(path.size()); // a command line has at most 32767 units
    std::string text(3 * static_cast<std::size_t>(length), '\0'); // no unit makes more bytes
    const int written = WideCharToMultiByte(CP_UTF8, 0, path.data(), length, text.data(),
                                            static_cast<int>(text.size()), nullptr, nullptr);
    text.resize(static_cast<std::size_t>(std::max(written, 0)));
    return text;
}

NativePath folderOf(const NativePath &path)
{
    return path.substr(0, path.find_last_of(L"/\\") + 1);
}

NativePath extendedPath(const NativePath &path)
{
    NativePath full(maxPathLength, L'\0');
    const DWORD length = GetFullPathNameW(path.c_str(), maxPathLength, full.data(), nullptr);
    if (length == 0 || length >= maxPathLength) {
        return path;
    }
    full.resize(length);
    if (full.starts_with(L"\\\\?\\") || full.starts_with(L"\\\\.\\")) {
        return full;
    }
    return full.starts_with(L"\\\\") ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

NativePath withoutLink(const NativePath &path)
{
    NativePath found = extendedPath(path);
    const DWORD attributes = GetFileAttributesW(found.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
        return found;
    }
    const HANDLE handle = openToAsk(path);
    if (handle != INVALID_HANDLE_VALUE) {
        NativePath target(maxPathLength, L'\0');
        const DWORD length = GetFinalPathNameByHandleW(handle, target.data(), maxPathLength, 0);
        CloseHandle(handle);
        if (length != 0 && length < maxPathLength) {
            found = target.substr(0, length);
        }
    }
    return found;
}

bool isSameFile(const NativePath &left, const NativePath &right)
{
    if (left == right) {
        return true;
    }
    const auto one = informationOf(left);
    const auto other = informationOf(right);
    return one && other && one->dwVolumeSerialNumber == other->dwVolumeSerialNumber
        && one->nFileIndexHigh == other->nFileIndexHigh
        && one->nFileIndexLow == other->nFileIndexLow;
}

} // namespace pe
