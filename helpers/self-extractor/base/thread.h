// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#ifndef _WIN32
#include <pthread.h>
#endif

namespace sfx {

/// A lock and the one condition that goes with it, on what the system has: the module has no
/// runtime library, and the C++ one would bring it.
class Monitor
{
public:
    Monitor() = default;
    Monitor(const Monitor &) = delete;
    Monitor &operator=(const Monitor &) = delete;

    void enter();
    void leave();
    /// Within the lock: gives it back until somebody calls wake(), or for no reason at all.
    void wait();
    void wake();

private:
#ifdef _WIN32
    // SRWLOCK and CONDITION_VARIABLE, which are a pointer each and begin as null.
    void *m_lock = nullptr;
    void *m_condition = nullptr;
#else
    pthread_mutex_t m_lock = PTHREAD_MUTEX_INITIALIZER;
    pthread_cond_t m_condition = PTHREAD_COND_INITIALIZER;
#endif
};

/// Holds a Monitor's lock as long as it lives.
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

/// A thread that runs one function. To be joined before it goes.
class Thread
{
public:
    Thread() = default;
    Thread(const Thread &) = delete;
    Thread &operator=(const Thread &) = delete;

    /// To be called once. False: the system gives no thread.
    [[nodiscard]] bool start(void (*function)(void *), void *argument);
    bool isStarted() const { return m_isStarted; }
    void join();

private:
    struct Entry; // what the system calls

    void (*m_function)(void *) = nullptr;
    void *m_argument = nullptr;
    bool m_isStarted = false;
#ifdef _WIN32
    void *m_handle = nullptr;
#else
    pthread_t m_handle{};
#endif
};

} // namespace sfx
