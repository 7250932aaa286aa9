// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

// While the object exists, this process uses a private registry branch, empty at first, instead of
// the current user's. Does nothing on other systems than Windows, which have no registry.
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
