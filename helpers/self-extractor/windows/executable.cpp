// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/executable.h"

#include "helpers/self-extractor/start/winpath.h"

namespace sfx {

namespace {

constexpr DWORD longestPath = 32768; // Windows' limit in UTF-16 units, with the terminator

} // namespace

bool Executable::open()
{
    Array<char16_t> path;
    if (!path.allocate(longestPath)) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return false;
    }
    const DWORD size = GetModuleFileNameW(nullptr, wide(path.data()), longestPath);
    if (size == 0 || size == longestPath || !m_path.assign(path.data(), size)) {
        return false;
    }
    Text extended;
    if (!toExtendedPath(m_path, extended)) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return false;
    }
    m_file.reset(CreateFileW(wide(extended.data()), GENERIC_READ,
                             FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                             FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    LARGE_INTEGER length = {};
    if (!m_file || !GetFileSizeEx(m_file.get(), &length)) {
        return false;
    }
    m_size = static_cast<std::uint64_t>(length.QuadPart);
    return true;
}

bool Executable::readAt(std::uint64_t offset, void *data, std::size_t size)
{
    if (offset > m_size || size > m_size - offset) {
        return false;
    }
    auto *out = static_cast<char *>(data);
    while (size != 0) {
        OVERLAPPED position = {};
        position.Offset = static_cast<DWORD>(offset);
        position.OffsetHigh = static_cast<DWORD>(offset >> 32);
        const DWORD piece = size < (1u << 30) ? static_cast<DWORD>(size) : (1u << 30);
        DWORD got = 0;
        if (!ReadFile(m_file.get(), out, piece, &got, &position) || got == 0) {
            return false;
        }
        out += got;
        offset += got;
        size -= got;
    }
    return true;
}

} // namespace sfx
