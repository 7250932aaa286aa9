// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/memory.h"
#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/base/thread.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// A small window that shows the progress of unpacking and lets the user cancel it. It appears only
// if unpacking takes a while. It runs in another thread and disappears when this object is
// destroyed. Without a desktop that a user sees there is no window, and everything else is the same.
class ProgressWindow
{
public:
    // `title` is the window's title and must outlive this object. `totalBytes` is the final sum of
    // all add().
    ProgressWindow(const Text &title, std::uint64_t totalBytes);
    ~ProgressWindow();
    ProgressWindow(const ProgressWindow &) = delete;
    ProgressWindow &operator=(const ProgressWindow &) = delete;

    void add(std::size_t bytes) { __atomic_fetch_add(&m_done, bytes, __ATOMIC_RELAXED); }
    // The user has cancelled.
    bool isCancelled() const { return __atomic_load_n(&m_isCancelled, __ATOMIC_RELAXED); }
    // nullptr if the window is not shown.
    HWND dialog() const { return __atomic_load_n(&m_dialog, __ATOMIC_ACQUIRE); }

private:
    struct Desktop; // the system's functions
    static void run(void *self);
    static INT_PTR CALLBACK dialogProcedure(HWND dialog, UINT message, WPARAM first, LPARAM second);
    bool isNeeded() const; // waits until it is known
    void show();
    bool handle(HWND dialog, UINT message, WPARAM first);
    void setUp(HWND dialog) const;
    void close(HWND dialog);
    // In steps of the progress bar.
    unsigned progress() const;

    const Text &m_title;
    const std::uint64_t m_total;
    std::uint64_t m_done = 0;
    bool m_isCancelled = false;
    Owned<Desktop> m_desktop; // used by the thread only until m_dialog is set
    HWND m_dialog = nullptr;
    Handle m_end; // signalled when the window is to close
    Thread m_thread;
};

} // namespace sfx
