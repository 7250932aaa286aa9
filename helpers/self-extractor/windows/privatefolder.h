// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/lockfile.h"

namespace sfx {

// A new folder `kp-<20 digits>` in the user's temporary folder that only this user, the system and
// administrators can access, and the application's folder inside it. The digits are the same at
// every start of a produced file; if that folder exists, they are random. The destructor removes
// both folders with everything in them. If something is still in use, everything and the lock file
// beside it stay, and a later start removes them.
class PrivateFolder
{
public:
    PrivateFolder() = default;
    PrivateFolder(const PrivateFolder &) = delete;
    PrivateFolder &operator=(const PrivateFolder &) = delete;
    ~PrivateFolder() { remove(); }

    // Creates both folders in `temporaryFolder`, which ends with a separator. The application's
    // folder gets `applicationName`, or a short name if `program`'s path would be too long.
    // `producedFile` is the path of this process' file. Returns false on failure, with the reason in
    // GetLastError(); nothing is left behind.
    [[nodiscard]] bool create(const Text &temporaryFolder, const Text &applicationName,
                              const Text &program, const Text &producedFile);
    // Removes everything. Does nothing if nothing has been created.
    void remove();

    // The application's folder without a separator at its end, as programs know it.
    const Text &application() const { return m_application; }
    // The lock file's handle.
    HANDLE lock() const { return m_lock.handle(); }

private:
    struct RootPath
    {
        Text plain;
        Text extended;
        Text lock; // of the lock file, in extended form
    };

    [[nodiscard]] static bool makePath(const Text &temporaryFolder, const Text &name,
                                       RootPath &path);
    [[nodiscard]] static bool makeStablePath(const Text &temporaryFolder, const Text &producedFile,
                                             const Text &rights, RootPath &path);
    [[nodiscard]] static bool makeRandomPath(const Text &temporaryFolder, RootPath &path);
    bool createAt(RootPath &path, SECURITY_ATTRIBUTES *security);
    bool createRoot(const Text &temporaryFolder, const Text &producedFile);

    LockFile m_lock;
    Handle m_guard; // of the private folder: as long as it is open, nobody can replace the folder
    Text m_root;
    Text m_application;
};

} // namespace sfx
