// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

// While it lives, Qt's refusal to start without a display ends the process with status 1 and one line
// on standard error, instead of an abort. Put it around the construction of the application object.
// At most one lives at a time; on the main thread.
class StartGuard
{
public:
    StartGuard();
    ~StartGuard();
    StartGuard(const StartGuard &) = delete;
    StartGuard &operator=(const StartGuard &) = delete;
};
