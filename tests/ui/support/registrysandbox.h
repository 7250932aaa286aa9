// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

// While it lives, this process has a registry branch of its own, empty at first, for the one of the current
// user. Elsewhere than on Windows there is no registry, and it does nothing.
class RegistrySandbox
{
public:
#ifdef Q_OS_WIN
    RegistrySandbox();
    ~RegistrySandbox();
    RegistrySandbox(const RegistrySandbox &) = delete;
    RegistrySandbox &operator=(const RegistrySandbox &) = delete;
#endif
};
