// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/memory.h"
#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/base/thread.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

/// A small window that says how far unpacking is and lets the user cancel it. It appears only when
/// that takes a while, runs in a thread of its own, and goes with this object. Without a desktop
/// there is no window, and nothing else is different.
class ProgressWindow
{
public:
    /// `title` heads the window and outlives this object; `totalBytes` is what add() counts up to.
    ProgressWindow(const Text &title, std::uint64_t totalBytes);
    ~ProgressWindow();
    ProgressWindow(const ProgressWindow &) = delete;
    ProgressWindow &operator=(const ProgressWindow &) = delete;

    void add(std::size_t bytes) { __atomic_fetch_add(&m_done, bytes, __ATOMIC_RELAXED); }
    /// The user does not want to go on.
    bool isCancelled() const { return __atomic_load_n(&m_isCancelled, __ATOMIC_RELAXED); }

private:
    struct Desktop; // the system's functions
    static void run(void *self);
    static INT_PTR CALLBACK dialogProcedure(HWND dialog, UINT message, WPARAM first, LPARAM second);
    void show();
    bool handle(HWND dialog, UINT message, WPARAM first, LPARAM second);
    void drawBar(const void *item) const;

    const Text &m_title;
    const std::uint64_t m_total;
    std::uint64_t m_done = 0;
    bool m_isCancelled = false;
    Owned<Desktop> m_desktop; // the thread's until m_dialog is set
    HWND m_dialog = nullptr;
    Handle m_end; // signalled when the window is to go
    Thread m_thread;
};

} // namespace sfx
