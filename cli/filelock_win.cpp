// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/filelock.h"

#include "platform/nativepath.h"

#include <windows.h>

FileLock::FileLock(const QString &path) : m_path(path) {}

FileLock::~FileLock()
{
    release();
}

// While the file is open here, no other process can open it. Windows removes the file when it is
// closed, also when the process is killed, and also on a network drive.
FileLock::Result FileLock::tryHold()
{
    const HANDLE file = CreateFileW(pe::extendedPath(toNativePath(m_path)).c_str(),
                                    GENERIC_READ | GENERIC_WRITE | DELETE, 0, nullptr, OPEN_ALWAYS,
                                    FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        m_handle = reinterpret_cast<qintptr>(file);
        return Result::Held;
    }
    const DWORD error = GetLastError();
    m_error = qt_error_string(static_cast<int>(error));
    // Windows denies access to a file that is just being removed.
    return error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED ? Result::HeldByAnother
                                                                            : Result::Failed;
}

void FileLock::release()
{
    if (m_handle != -1) {
        CloseHandle(reinterpret_cast<HANDLE>(m_handle));
        m_handle = -1;
    }
}
