// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// Removes an open file, which needs the right DELETE, and closes it.
void discardFile(Handle &file);

// An empty file beside a folder; one process at a time can have it open. The system closes the file
// when the process ends, for whatever reason. While the file beside a private folder is open, the
// folder is in use; programs that the process starts inherit the handle and keep it alive, too.
//
// The file is created before the folder and removed after it, so there is never a folder without a
// lock file.
class LockFile
{
public:
    // Creates the file, which must be new. Returns false on failure, with the reason in
    // GetLastError().
    [[nodiscard]] bool create(const Text &path, SECURITY_ATTRIBUTES *security);
    // Opens the file of a process that has ended. Returns false if the owner is still running or
    // the file cannot be opened.
    [[nodiscard]] bool take(const Text &path) { return open(path, nullptr, OPEN_EXISTING); }
    // Opens the file, which is created if it does not exist. Programs do not inherit the handle.
    // Returns false on failure, with the reason in GetLastError().
    [[nodiscard]] bool acquire(const Text &path, SECURITY_ATTRIBUTES *security)
    {
        return open(path, security, OPEN_ALWAYS);
    }
    // Removes the file. Call it when the folder has been removed.
    void discard() { discardFile(m_file); }
    // Closes the file, for another process to take.
    void release() { m_file.reset(); }

    HANDLE handle() const { return m_file.get(); }

private:
    [[nodiscard]] bool open(const Text &path, SECURITY_ATTRIBUTES *security, DWORD disposition);

    Handle m_file;
};

} // namespace sfx
