// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/lockfile.h"

namespace sfx {

/// A newly made folder `kp-<random>` in the user's temporary folder that only this user, the system
/// and administrators can enter, and in it the folder for the application. Both and everything in
/// them go when the object goes; what is locked then is left to the next start, together with the
/// lock file beside the folder that says whose it is.
class PrivateFolder
{
public:
    PrivateFolder() = default;
    PrivateFolder(const PrivateFolder &) = delete;
    PrivateFolder &operator=(const PrivateFolder &) = delete;
    ~PrivateFolder() { remove(); }

    /// Makes both folders in `temporaryFolder`, which ends with a separator. The application's gets
    /// the name, or a short one where `program`'s path would grow too long. False: it cannot be
    /// made; GetLastError() tells why and nothing is left behind.
    [[nodiscard]] bool create(const Text &temporaryFolder, const Text &applicationName,
                              const Text &program);
    /// Removes everything. Does nothing when there is nothing.
    void remove();

    /// The application's folder without a separator at its end, as programs know it.
    const Text &application() const { return m_application; }
    /// The lock file.
    HANDLE lock() const { return m_lock.handle(); }

private:
    bool createRoot(const Text &temporaryFolder);

    LockFile m_lock;
    Text m_root;
    Text m_application;
};

} // namespace sfx
