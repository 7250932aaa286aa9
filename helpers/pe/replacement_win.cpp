// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/replacement.h"

#include "helpers/pe/systemerror.h"

#include <random>

#include <windows.h>

namespace pe {

namespace {

constexpr int renameAttempts = 30;
constexpr DWORD pauseBetweenAttempts = 100; // milliseconds

Error cannotWrite(const char *what)
{
    return systemError(ErrorKind::CannotWrite, what);
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

Result<Replacement> Replacement::beside(const std::filesystem::path &target)
{
    Replacement made(target);
    made.m_temporary = made.m_target.parent_path() / temporaryName();
    const HANDLE handle = CreateFileW(made.m_temporary.c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                      nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    made.m_file.m_handle = reinterpret_cast<std::intptr_t>(handle);
    if (made.m_file.m_handle == File::noHandle) {
        const Error error = cannotWrite("no new file can be made beside it");
        made.m_temporary.clear();
        return error;
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
        return cannotWrite("the new file cannot be made large enough");
    }
    m_file.m_size = size;
    return Done{};
}

Result<Done> Replacement::copyFrom(const File &source, const FileRange &range, std::uint64_t to)
{
    return copyThroughMemory(source, range, to);
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
    for (int attempt = 1;; ++attempt) {
        if (MoveFileExW(m_temporary.c_str(), m_target.c_str(), MOVEFILE_REPLACE_EXISTING) != 0) {
            m_temporary.clear();
            return Done{};
        }
        const DWORD code = GetLastError();
        const bool isInUse = code == ERROR_ACCESS_DENIED || code == ERROR_SHARING_VIOLATION;
        if (!isInUse || attempt == renameAttempts) {
            return cannotWrite("the new file cannot take its place");
        }
        Sleep(pauseBetweenAttempts);
    }
}

} // namespace pe
