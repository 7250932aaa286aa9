// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/atomicfile.h"

#include "helpers/pe/systemerror.h"

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

NativePath temporaryName()
{
    LARGE_INTEGER ticks = {};
    QueryPerformanceCounter(&ticks);
    return L"kestrelpack-" + std::to_wstring(GetCurrentProcessId()) + L"-"
        + std::to_wstring(ticks.QuadPart) + L".tmp";
}

} // namespace

Result<AtomicFile> AtomicFile::beside(const NativePath &target)
{
    AtomicFile made(target);
    made.m_temporary = folderOf(made.m_target) + temporaryName();
    const HANDLE handle = CreateFileW(made.m_temporary.c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                      nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    made.m_file.m_handle = reinterpret_cast<std::intptr_t>(handle);
    if (made.m_file.m_handle == File::noHandle) {
        const Error error = cannotWrite("no new file can be created beside it");
        made.m_temporary.clear();
        return error;
    }
    return made;
}

AtomicFile::~AtomicFile()
{
    if (!m_temporary.empty()) {
        m_file.close();
        DeleteFileW(m_temporary.c_str());
    }
}

Result<Done> AtomicFile::resize(std::uint64_t size)
{
    LARGE_INTEGER end = {};
    end.QuadPart = static_cast<LONGLONG>(size);
    const HANDLE handle = handleOf(m_file.m_handle);
    if (SetFilePointerEx(handle, end, nullptr, FILE_BEGIN) == 0 || SetEndOfFile(handle) == 0) {
        return cannotWrite("the new file cannot get its size");
    }
    m_file.m_size = size;
    return Done{};
}

Result<Done> AtomicFile::copyFrom(const File &source, const FileRange &range, std::uint64_t to)
{
    return copyThroughMemory(source, range, to);
}

// The access rights come from the folder, as those of the original did. Its attributes (hidden and
// others) are set on the new file.
Result<Done> AtomicFile::commit(File original)
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
