// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/lockfile.h"

namespace sfx {

// A new folder `kp-<random>` in the user's temporary folder that only this user, the system and
// administrators can access, and the application's folder inside it. The destructor removes both
// with everything in them. If something is still locked, the folder and the lock file beside it
// stay, and a later start removes them.
class PrivateFolder
{
public:
    PrivateFolder() = default;
    PrivateFolder(const PrivateFolder &) = delete;
    PrivateFolder &operator=(const PrivateFolder &) = delete;
    ~PrivateFolder() { remove(); }

    // Creates both folders in `temporaryFolder`, which ends with a separator. The application's
    // folder gets `applicationName`, or a short name if `program`'s path would be too long. Returns
    // false on failure, with the reason in GetLastError(); nothing is left behind.
    [[nodiscard]] bool create(const Text &temporaryFolder, const Text &applicationName,
                              const Text &program);
    // Removes everything. Does nothing if nothing has been created.
    void remove();

    // The application's folder without a separator at its end, as programs know it.
    const Text &application() const { return m_application; }
    // The lock file's handle.
    HANDLE lock() const { return m_lock.handle(); }

private:
    bool createRoot(const Text &temporaryFolder);

    LockFile m_lock;
    Text m_root;
    Text m_application;
};

} // namespace sfx
