// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/executable.h"

#include "helpers/self-extractor/start/winpath.h"

#include <winternl.h>

// MinGW's winternl.h does not declare it (Microsoft, ntifs.h).
extern "C" NTSYSAPI NTSTATUS NTAPI NtReadFile(HANDLE, HANDLE, PIO_APC_ROUTINE, PVOID,
                                              PIO_STATUS_BLOCK, PVOID, ULONG, PLARGE_INTEGER,
                                              PULONG);

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
        // ReadFile() at a position also asks for a message to a completion port. The file has none, but
        // under Wine that is a request to its server with each read.
        LARGE_INTEGER position = {};
        position.QuadPart = static_cast<LONGLONG>(offset);
        IO_STATUS_BLOCK result = {};
        const DWORD piece = size < (1u << 30) ? static_cast<DWORD>(size) : (1u << 30);
        if (NtReadFile(m_file.get(), nullptr, nullptr, nullptr, &result, out, piece, &position,
                       nullptr)
                < 0
            || result.Information == 0) {
            return false;
        }
        out += result.Information;
        offset += result.Information;
        size -= result.Information;
    }
    return true;
}

} // namespace sfx
