// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/filecloser.h"

#include "helpers/self-extractor/unpacking/slowclosing.h"

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

} // namespace

void setTimeAndAttributes(HANDLE file, const Entry &entry)
{
    FILE_BASIC_INFO info = {};
    if (entry.hasModified) {
        info.LastWriteTime.QuadPart = static_cast<LONGLONG>(entry.modified);
    }
    // A new file has the archive attribute.
    const bool hasThem = !entry.isFolder && entry.attributes == FILE_ATTRIBUTE_ARCHIVE;
    info.FileAttributes = hasThem ? 0 : entry.attributes; // 0: leave unchanged
    SetFileInformationByHandle(file, FileBasicInfo, &info, sizeof info);
}

void FileCloser::complete(const Item &item)
{
    setTimeAndAttributes(item.file, item.entry);
    CloseHandle(item.file);
}

// Runs in the threads.
void FileCloser::work()
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

void FileCloser::run(void *self)
{
    static_cast<FileCloser *>(self)->work();
}

// With the lock held.
void FileCloser::startThreads()
{
    for (Thread &thread : m_threads) {
        if (!thread.start(run, this)) {
            break; // continue with the threads we have
        }
        m_hasThreads = true;
    }
}

// Leaves the file to a thread; returns false if there is none.
bool FileCloser::enqueue(const Item &item)
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

void FileCloser::closeMeasured(const Item &item)
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

void FileCloser::close(Handle &file, const Entry &entry)
{
    const Item item = {file.release(), entry};
    if (!enqueue(item)) {
        closeMeasured(item);
    }
}

void FileCloser::finish()
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

} // namespace sfx
