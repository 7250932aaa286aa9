// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/jobgate.h"

void JobGate::pass()
{
    passAfter(std::chrono::milliseconds(0));
}

void JobGate::passAfter(std::chrono::milliseconds duration)
{
    std::unique_lock lock(m_mutex);
    if (!m_closing.wait_for(lock, duration, [this] { return m_isClosed; })) {
        return;
    }
    m_jobStands = true;
    m_standing.notify_all();
    m_closing.wait(lock, [] { return false; });
}

bool JobGate::close(std::chrono::milliseconds limit)
{
    std::unique_lock lock(m_mutex);
    m_isClosed = true;
    m_closing.notify_all();
    return m_standing.wait_for(lock, limit, [this] { return m_jobStands; });
}
