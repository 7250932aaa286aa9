// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// An empty file beside a private folder; one process at a time can have it open. While it is open,
// the folder is in use. The system closes the file when the process ends, for whatever reason.
// Programs that the process starts inherit the handle and keep the folder alive, too.
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
    [[nodiscard]] bool take(const Text &path);
    // Removes the file. Call it when the folder has been removed.
    void discard();
    // Closes the file, for another process to take.
    void release() { m_file.reset(); }

    HANDLE handle() const { return m_file.get(); }

private:
    Handle m_file;
};

} // namespace sfx
