// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/usefile.h"

#include "helpers/self-extractor/windows/lockfile.h"

namespace sfx {

namespace {

// A path is 8 bytes, and there are at most 2^26: sizes fit into 32 bits.
bool readAt(HANDLE file, DWORD offset, void *data, std::size_t size)
{
    OVERLAPPED position = {};
    position.Offset = offset;
    DWORD got = 0;
    return ReadFile(file, data, static_cast<DWORD>(size), &got, &position) && got == size;
}

bool writeAt(HANDLE file, DWORD offset, const void *data, std::size_t size)
{
    OVERLAPPED position = {};
    position.Offset = offset;
    DWORD written = 0;
    return WriteFile(file, data, static_cast<DWORD>(size), &written, &position) && written == size;
}

} // namespace

std::uint64_t timeNow()
{
    FILETIME now = {};
    GetSystemTimePreciseAsFileTime(&now);
    return (std::uint64_t{now.dwHighDateTime} << 32) | now.dwLowDateTime;
}

// The right to set the time is not compared with what others share.
bool UseFile::share(const Text &path)
{
    m_file.reset(CreateFileW(wide(path.data()), GENERIC_READ | FILE_WRITE_ATTRIBUTES,
                             FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT,
                             nullptr));
    return m_file && SetHandleInformation(m_file.get(), HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
}

bool UseFile::claim(const Text &path, SECURITY_ATTRIBUTES *security, DWORD disposition)
{
    m_file.reset(CreateFileW(wide(path.data()), GENERIC_READ | GENERIC_WRITE | DELETE, 0, security,
                             disposition, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT,
                             nullptr));
    return static_cast<bool>(m_file);
}

void UseFile::discard()
{
    discardFile(m_file);
}

bool UseFile::read(KeptRecord &record) const
{
    return readAt(m_file.get(), 0, &record, sizeof record) && isRecord(record);
}

bool UseFile::readPaths(const KeptRecord &record, PathIndex &paths) const
{
    Array<std::uint64_t> hashes;
    return hashes.allocate(record.paths)
        && readAt(m_file.get(), sizeof record, hashes.data(), hashes.size() * sizeof(std::uint64_t))
        && hasPaths(record, hashes) && paths.build(std::move(hashes));
}

bool UseFile::write(KeptRecord &record, const Array<std::uint64_t> &hashes) const
{
    sealRecord(record);
    return isRecord(record)
        && writeAt(m_file.get(), sizeof record, hashes.data(),
                   hashes.size() * sizeof(std::uint64_t))
        && writeAt(m_file.get(), 0, &record, sizeof record);
}

std::uint64_t UseFile::lastUse() const
{
    FILE_BASIC_INFO info = {};
    GetFileInformationByHandleEx(m_file.get(), FileBasicInfo, &info, sizeof info);
    return static_cast<std::uint64_t>(info.LastWriteTime.QuadPart);
}

void UseFile::setLastUse() const
{
    FILE_BASIC_INFO info = {}; // zeros: leave unchanged
    info.LastWriteTime.QuadPart = static_cast<LONGLONG>(timeNow());
    SetFileInformationByHandle(m_file.get(), FileBasicInfo, &info, sizeof info);
}

} // namespace sfx
