// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/core/text.h"

namespace sfx {

/// A newly made folder `kp-<random>` in the user's temporary folder that only this user, the system
/// and administrators can enter, and in it the folder for the application. Both and everything in
/// them go when the object goes.
class PrivateFolder
{
public:
    PrivateFolder() = default;
    PrivateFolder(const PrivateFolder &) = delete;
    PrivateFolder &operator=(const PrivateFolder &) = delete;
    ~PrivateFolder() { remove(); }

    /// False: it cannot be made; GetLastError() tells why and nothing is left behind.
    [[nodiscard]] bool create(const Text &applicationName);
    /// Removes everything. Does nothing when there is nothing.
    void remove();

    /// The application's folder without a separator at its end, as programs know it.
    const Text &application() const { return m_application; }

private:
    Text m_root;
    Text m_application;
};

} // namespace sfx
