// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#ifndef _WIN32
#include <pthread.h>
#endif

namespace sfx {

// A lock with one condition variable. It uses the system's functions directly, because the module
// has no runtime library and the C++ ones would need one.
class Monitor
{
public:
    Monitor() = default;
    Monitor(const Monitor &) = delete;
    Monitor &operator=(const Monitor &) = delete;

    void enter();
    void leave();
    // Releases the lock and blocks until wake(); may wake spuriously. Call it with the lock held.
    void wait();
    void wake();

private:
#ifdef _WIN32
    // SRWLOCK and CONDITION_VARIABLE: each is a pointer that is null at first.
    void *m_lock = nullptr;
    void *m_condition = nullptr;
#else
    pthread_mutex_t m_lock = PTHREAD_MUTEX_INITIALIZER;
    pthread_cond_t m_condition = PTHREAD_COND_INITIALIZER;
#endif
};

// Holds a Monitor's lock while this object exists.
class Locked
{
public:
    explicit Locked(Monitor &monitor) : m_monitor(monitor) { m_monitor.enter(); }
    Locked(const Locked &) = delete;
    Locked &operator=(const Locked &) = delete;
    ~Locked() { m_monitor.leave(); }

private:
    Monitor &m_monitor;
};

// A thread that runs one function. Call join() before this object is destroyed.
class Thread
{
public:
    Thread() = default;
    Thread(const Thread &) = delete;
    Thread &operator=(const Thread &) = delete;

    // Call it again only after join(). Returns false if the system cannot create a thread.
    [[nodiscard]] bool start(void (*function)(void *), void *argument);
    bool isStarted() const { return m_isStarted; }
    // Waits until the function has returned. Does nothing if it was not started.
    void join();

private:
    struct Entry; // the function that the system calls

    void (*m_function)(void *) = nullptr;
    void *m_argument = nullptr;
    bool m_isStarted = false;
#ifdef _WIN32
    void *m_handle = nullptr;
#else
    pthread_t m_handle{};
#endif
};

// Calls work(argument) on this thread and on `count` others at the same time, or on as many as the system can
// start. Returns when all calls have. The others must not be started.
void runOnThreads(Thread *others, unsigned count, void (*work)(void *), void *argument);

} // namespace sfx
