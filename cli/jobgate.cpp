// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/jobgate.h"

void JobGate::pass()
{
    if (!m_isClosed) {
        return;
    }
    m_jobStands = true;
    m_standing.release();
    m_never.acquire();
}

bool JobGate::close(std::chrono::milliseconds limit)
{
    m_isClosed = true;
    if (!m_jobStands) {
        static_cast<void>(m_standing.tryAcquire(1, static_cast<int>(limit.count())));
    }
    return m_jobStands;
}
