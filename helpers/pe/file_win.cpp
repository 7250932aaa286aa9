// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/file.h"

#include "helpers/pe/systemerror.h"

#include <algorithm>
#include <utility>

#include <windows.h>

namespace pe {

namespace {

// Virus scanners open a program that has just been written; they close it again soon.
constexpr int openAttempts = 30;
constexpr DWORD pauseBetweenAttempts = 100; // milliseconds

HANDLE handleOf(std::intptr_t handle)
{
    return reinterpret_cast<HANDLE>(handle);
}

OVERLAPPED positionOf(std::uint64_t offset)
{
    OVERLAPPED position = {};
    position.Offset = static_cast<DWORD>(offset & 0xffffffffU);
    position.OffsetHigh = static_cast<DWORD>(offset >> 32);
    return position;
}

DWORD step(std::size_t size)
{
    return static_cast<DWORD>(std::min<std::size_t>(size, 1U << 24));
}

} // namespace

Result<File> File::open(const NativePath &path, Access access)
{
    const bool edit = access == Access::Edit;
    const NativePath name = extendedPath(path);
    File file;
    for (int attempt = 0; attempt < openAttempts; ++attempt) {
        // FILE_SHARE_READ: nobody else can write while we have it open.
        const HANDLE handle = CreateFileW(name.c_str(), GENERIC_READ | (edit ? GENERIC_WRITE : 0U),
                                          FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                          FILE_ATTRIBUTE_NORMAL, nullptr);
        file.m_handle = reinterpret_cast<std::intptr_t>(handle);
        if (file.m_handle != noHandle || GetLastError() != ERROR_SHARING_VIOLATION) {
            break;
        }
        Sleep(pauseBetweenAttempts);
        SetLastError(ERROR_SHARING_VIOLATION);
    }
    LARGE_INTEGER size = {};
    if (file.m_handle == noHandle || GetFileSizeEx(handleOf(file.m_handle), &size) == 0) {
        return systemError(ErrorKind::CannotRead,
                           edit ? "cannot be opened for editing" : "cannot be opened");
    }
    file.m_size = static_cast<std::uint64_t>(size.QuadPart);
    return file;
}

Result<File> File::create(const NativePath &path)
{
    File file;
    file.m_handle = reinterpret_cast<std::intptr_t>(
        CreateFileW(extendedPath(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                    CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file.m_handle == noHandle) {
        return systemError(ErrorKind::CannotWrite, "cannot be created");
    }
    return file;
}

void File::close()
{
    if (m_handle != noHandle) {
        CloseHandle(handleOf(std::exchange(m_handle, noHandle)));
    }
}

Result<Done> File::readAt(std::uint64_t offset, std::span<std::uint8_t> buffer) const
{
    while (!buffer.empty()) {
        OVERLAPPED position = positionOf(offset);
        DWORD got = 0;
        if (ReadFile(handleOf(m_handle), buffer.data(), step(buffer.size()), &got, &position) == 0
            && GetLastError() != ERROR_HANDLE_EOF) {
            return systemError(ErrorKind::CannotRead, "cannot be read");
        }
        if (got == 0) {
            return Error{ErrorKind::Damaged, "the file ends too early"};
        }
        buffer = buffer.subspan(got);
        offset += got;
    }
    return Done{};
}

Result<Done> File::writeAt(std::uint64_t offset, ByteView bytes)
{
    while (!bytes.empty()) {
        OVERLAPPED position = positionOf(offset);
        DWORD put = 0;
        if (WriteFile(handleOf(m_handle), bytes.data(), step(bytes.size()), &put, &position) == 0
            || put == 0) {
            return systemError(ErrorKind::CannotWrite, "cannot be written");
        }
        bytes = bytes.subspan(put);
        offset += put;
    }
    return Done{};
}

// Sparse files are rare on Windows: all bytes count as data.
FileRange File::nextData(std::uint64_t from) const
{
    return {std::min(from, m_size), m_size};
}

} // namespace pe
