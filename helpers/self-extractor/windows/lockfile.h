// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

/// An empty file beside a private folder that one process at a time can have open. As long as one
/// has, the folder is its own; the system closes the file when the process ends, in whatever way.
/// The programs that it starts inherit the open file: who outlives it keeps the folder.
/// The file is there before the folder and goes after it, so that no folder is ever without one.
class LockFile
{
public:
    /// Makes the file, which must be new. False: GetLastError() tells why.
    [[nodiscard]] bool create(const Text &path, SECURITY_ATTRIBUTES *security);
    /// Takes over a dead process' file. False: its maker lives, or it is not to be had.
    [[nodiscard]] bool take(const Text &path);
    /// Removes the file; the folder is gone.
    void discard();
    /// Leaves the file for another process to take.
    void release() { m_file.reset(); }

    HANDLE handle() const { return m_file.get(); }

private:
    Handle m_file;
};

} // namespace sfx
