// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

// Without a display, Qt aborts the process. While a StartGuard exists, the process ends instead
// with status 1 and one line on standard error. Create it before the application object, and
// destroy it right after that. Only on the main thread, and only one at a time. It holds Qt's
// messages back; its destructor restores the previous message handler and then passes the messages
// to it.
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
