// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/jobgate.h"

void JobGate::pass()
{
    std::unique_lock lock(m_mutex);
    if (!m_isClosed) {
        return;
    }
    m_jobStands = true;
    m_standing.notify_all();
    m_never.wait(lock, [] { return false; });
}

bool JobGate::close(std::chrono::milliseconds limit)
{
    std::unique_lock lock(m_mutex);
    m_isClosed = true;
    return m_standing.wait_for(lock, limit, [this] { return m_jobStands; });
}
