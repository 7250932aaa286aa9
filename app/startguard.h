// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

// While it lives, Qt's refusal to start without a display ends the process with status 1 and one line
// on standard error, instead of an abort. Put it around the construction of the application object.
// At most one lives at a time; on the main thread. The message handler that was installed before is
// installed again at the end, and then gets what Qt has said meanwhile.
class StartGuard
{
public:
    StartGuard();
    ~StartGuard();
    StartGuard(const StartGuard &) = delete;
    StartGuard &operator=(const StartGuard &) = delete;

private:
    QtMessageHandler m_previous;
};
