// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/base/thread.h"

namespace sfx {

struct Thread::Entry
{
    static void *run(void *self)
    {
        const auto *thread = static_cast<Thread *>(self);
        thread->m_function(thread->m_argument);
        return nullptr;
    }
};

void Monitor::enter()
{
    pthread_mutex_lock(&m_lock);
}

void Monitor::leave()
{
    pthread_mutex_unlock(&m_lock);
}

void Monitor::wait()
{
    pthread_cond_wait(&m_condition, &m_lock);
}

void Monitor::wake()
{
    pthread_cond_broadcast(&m_condition);
}

bool Thread::start(void (*function)(void *), void *argument)
{
    m_function = function;
    m_argument = argument;
    m_isStarted = pthread_create(&m_handle, nullptr, Entry::run, this) == 0;
    return m_isStarted;
}

void Thread::join()
{
    if (m_isStarted) {
        pthread_join(m_handle, nullptr);
        m_isStarted = false;
    }
}

} // namespace sfx
