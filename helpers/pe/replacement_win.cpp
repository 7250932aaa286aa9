// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/replacement.h"

#include <algorithm>
#include <random>
#include <utility>
#include <windows.h>

namespace pe {

namespace {

constexpr int renameAttempts = 30;
constexpr DWORD pauseBetweenAttempts = 100; // milliseconds

Error systemError(const char *what, DWORD code)
{
    return {ErrorKind::CannotWrite, what, "Windows error " + std::to_string(code)};
}

HANDLE handleOf(std::intptr_t handle)
{
    return reinterpret_cast<HANDLE>(handle);
}

std::wstring temporaryName()
{
    std::random_device random;
    wchar_t name[40];
    swprintf(name, std::size(name), L"kestrelpack-%08x%08x.tmp", random(), random());
    return name;
}

} // namespace

Replacement::Replacement(Replacement &&other) noexcept
    : m_file(std::move(other.m_file))
    , m_target(std::move(other.m_target))
    , m_temporary(std::exchange(other.m_temporary, {}))
{
}

Result<Replacement> Replacement::beside(const std::filesystem::path &target)
{
    std::error_code ignored;
    Replacement made;
    made.m_target = std::filesystem::weakly_canonical(target, ignored);
    if (ignored || made.m_target.empty()) {
        made.m_target = target;
    }
    made.m_temporary = made.m_target.parent_path() / temporaryName();
    const HANDLE handle = CreateFileW(made.m_temporary.c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                      nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    made.m_file.m_handle = reinterpret_cast<std::intptr_t>(handle);
    if (made.m_file.m_handle == File::noHandle) {
        const DWORD code = GetLastError();
        made.m_temporary.clear();
        return systemError("no new file can be made beside it", code);
    }
    return made;
}

Replacement::~Replacement()
{
    if (!m_temporary.empty()) {
        m_file.close();
        DeleteFileW(m_temporary.c_str());
    }
}

Result<Done> Replacement::resize(std::uint64_t size)
{
    LARGE_INTEGER end = {};
    end.QuadPart = static_cast<LONGLONG>(size);
    const HANDLE handle = handleOf(m_file.m_handle);
    if (SetFilePointerEx(handle, end, nullptr, FILE_BEGIN) == 0 || SetEndOfFile(handle) == 0) {
        return systemError("the new file cannot be made large enough", GetLastError());
    }
    m_file.m_size = size;
    return Done{};
}

Result<Done> Replacement::copyFrom(const File &source, const FileRange &range, std::uint64_t to)
{
    Bytes buffer(4U << 20);
    for (std::uint64_t from = range.begin; from < range.end;) {
        const auto part
            = std::span(buffer).first(std::min<std::uint64_t>(range.end - from, buffer.size()));
        if (auto read = source.readAt(from, part); read.hasError()) {
            return read;
        }
        if (auto written = m_file.writeAt(to, part); written.hasError()) {
            return written;
        }
        from += part.size();
        to += part.size();
    }
    return Done{};
}

// Access rights come from the folder, as those of the file that is replaced did; its attributes
// (hidden, read-only ...) are taken over.
Result<Done> Replacement::commit(File original)
{
    BY_HANDLE_FILE_INFORMATION information = {};
    const bool known = GetFileInformationByHandle(handleOf(original.m_handle), &information) != 0;
    original.close();
    m_file.close();
    if (known) {
        SetFileAttributesW(m_temporary.c_str(), information.dwFileAttributes);
    }
    DWORD code = ERROR_SUCCESS;
    for (int attempt = 0; attempt < renameAttempts; ++attempt) {
        if (MoveFileExW(m_temporary.c_str(), m_target.c_str(), MOVEFILE_REPLACE_EXISTING) != 0) {
            m_temporary.clear();
            return Done{};
        }
        code = GetLastError();
        if (code != ERROR_ACCESS_DENIED && code != ERROR_SHARING_VIOLATION) {
            break;
        }
        Sleep(pauseBetweenAttempts);
    }
    return systemError("the new file cannot take its place", code);
}

} // namespace pe
