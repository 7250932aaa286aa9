// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/filecloser.h"

#include "helpers/self-extractor/base/thread.h"
#include "helpers/self-extractor/unpacking/slowclosing.h"
#include "helpers/self-extractor/windows/filesink.h"

namespace sfx {

namespace {

std::uint64_t ticksNow()
{
    LARGE_INTEGER ticks = {};
    QueryPerformanceCounter(&ticks);
    return static_cast<std::uint64_t>(ticks.QuadPart);
}

std::uint64_t ticksPerSecond()
{
    LARGE_INTEGER ticks = {};
    QueryPerformanceFrequency(&ticks);
    return static_cast<std::uint64_t>(ticks.QuadPart);
}

// Measures what the calls of close() take. If that is much, threads close the further files.
class MeasuringCloser final : public FileCloser
{
public:
    ~MeasuringCloser() override { finishThreads(); }

    void close(Handle &file, const Entry &entry) override;
    void finish() override { finishThreads(); }

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
    void finishThreads();
    void work();

    Monitor m_monitor;          // protects the other members, except for the threads
    std::uint64_t m_ticks = 0;  // what the calls of close() have taken
    std::uint64_t m_closed = 0; // number of these calls
    Item m_waiting[mostWaiting];
    std::size_t m_count = 0;
    bool m_hasThreads = false;
    bool m_ends = false;
    Thread m_threads[mostThreads]; // used by the one that starts them, and finishThreads()
};

void MeasuringCloser::complete(const Item &item)
{
    setTimeAndAttributes(item.file, item.entry);
    CloseHandle(item.file);
}

// Runs in the threads.
void MeasuringCloser::work()
{
    m_monitor.enter();
    while (m_count != 0 || !m_ends) {
        if (m_count == 0) {
            m_monitor.wait();
            continue;
        }
        const Item item = m_waiting[--m_count];
        m_monitor.wake(); // there is room
        m_monitor.leave();
        complete(item);
        m_monitor.enter();
    }
    m_monitor.leave();
}

void MeasuringCloser::run(void *self)
{
    static_cast<MeasuringCloser *>(self)->work();
}

// With the lock held.
void MeasuringCloser::startThreads()
{
    for (Thread &thread : m_threads) {
        if (!thread.start(run, this)) {
            break; // continue with the threads we have
        }
        m_hasThreads = true;
    }
}

// Leaves the file to a thread; returns false if there is none.
bool MeasuringCloser::enqueue(const Item &item)
{
    const Locked lock(m_monitor);
    if (!m_hasThreads) {
        return false;
    }
    while (m_count == mostWaiting) {
        m_monitor.wait();
    }
    m_waiting[m_count++] = item;
    m_monitor.wake();
    return true;
}

void MeasuringCloser::closeMeasured(const Item &item)
{
    const std::uint64_t before = ticksNow();
    complete(item);
    const std::uint64_t ticks = ticksNow() - before;
    const Locked lock(m_monitor);
    m_ticks += ticks;
    ++m_closed;
    if (!m_hasThreads && isClosingSlow(m_ticks, m_closed, ticksPerSecond())) {
        startThreads();
    }
}

void MeasuringCloser::close(Handle &file, const Entry &entry)
{
    const Item item = {file.release(), entry};
    if (!enqueue(item)) {
        closeMeasured(item);
    }
}

void MeasuringCloser::finishThreads()
{
    {
        const Locked lock(m_monitor);
        m_ends = true;
        m_monitor.wake();
    }
    for (Thread &thread : m_threads) {
        thread.join();
    }
}

} // namespace

Owned<FileCloser> makeFileCloser()
{
    return makeOwned<MeasuringCloser>();
}

} // namespace sfx
