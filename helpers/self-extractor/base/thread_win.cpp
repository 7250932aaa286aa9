// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/base/thread.h"

#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

namespace sfx {

namespace {

static_assert(sizeof(SRWLOCK) == sizeof(void *) && sizeof(CONDITION_VARIABLE) == sizeof(void *));

SRWLOCK *lockOf(void *&member)
{
    return reinterpret_cast<SRWLOCK *>(&member);
}

CONDITION_VARIABLE *conditionOf(void *&member)
{
    return reinterpret_cast<CONDITION_VARIABLE *>(&member);
}

} // namespace

struct Thread::Entry
{
    static DWORD WINAPI run(void *self)
    {
        const auto *thread = static_cast<Thread *>(self);
        thread->m_function(thread->m_argument);
        return 0;
    }
};

void Monitor::enter()
{
    AcquireSRWLockExclusive(lockOf(m_lock));
}

void Monitor::leave()
{
    ReleaseSRWLockExclusive(lockOf(m_lock));
}

void Monitor::wait()
{
    SleepConditionVariableSRW(conditionOf(m_condition), lockOf(m_lock), INFINITE, 0);
}

void Monitor::wake()
{
    WakeAllConditionVariable(conditionOf(m_condition));
}

bool Thread::start(void (*function)(void *), void *argument)
{
    m_function = function;
    m_argument = argument;
    m_handle = CreateThread(nullptr, 0, Entry::run, this, 0, nullptr);
    m_isStarted = m_handle != nullptr;
    return m_isStarted;
}

void Thread::join()
{
    if (m_isStarted) {
        WaitForSingleObject(m_handle, INFINITE);
        CloseHandle(m_handle);
        m_isStarted = false;
    }
}

} // namespace sfx
