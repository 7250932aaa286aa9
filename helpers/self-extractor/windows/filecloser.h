// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/archive/archive.h"
#include "helpers/self-extractor/base/thread.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// Failures are ignored: the program runs without them.
void setTimeAndAttributes(HANDLE file, const Entry &entry);

// Gives complete files their time and attributes and closes them. Virus scanners look into a new
// file while it is closed. If that is slow, further files are closed by threads of this object.
class FileCloser
{
public:
    FileCloser() = default;
    FileCloser(const FileCloser &) = delete;
    FileCloser &operator=(const FileCloser &) = delete;
    ~FileCloser() { finish(); }

    // Any thread may call it. Blocks while too many files are waiting.
    void close(Handle &file, const Entry &entry);
    // Returns when all files are closed. Call it after the last close().
    void finish();

private:
    struct Item
    {
        HANDLE file = nullptr;
        Entry entry; // its path is no longer valid
    };
    static constexpr std::size_t mostWaiting = 64;
    // Most of the time they wait for the scanner.
    static constexpr std::size_t mostThreads = 4;

    static void run(void *self);
    static void complete(const Item &item);
    bool enqueue(const Item &item);
    void closeMeasured(const Item &item);
    void startThreads();
    void work();

    Monitor m_monitor;          // protects the other members, except for the threads
    std::uint64_t m_ticks = 0;  // what the calls of close() have taken
    std::uint64_t m_closed = 0; // number of these calls
    Item m_waiting[mostWaiting];
    std::size_t m_count = 0;
    bool m_hasThreads = false;
    bool m_ends = false;
    Thread m_threads[mostThreads]; // used by the one that starts them, and finish()
};

} // namespace sfx
