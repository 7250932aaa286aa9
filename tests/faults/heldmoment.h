// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/fakes/fakeplatform.h"

#include <QSemaphore>

#include <atomic>

// Stops a job, on its thread, when a moment (see FakePlatform::before) comes for the `which`-th
// time. The job goes on after release().
class HeldMoment
{
public:
    HeldMoment(FakePlatform &platform, const QString &moment, int which = 1)
    {
        platform.before = [this, moment, which](const QString &now) {
            if (now == moment && ++m_seen == which) {
                m_isReached = true;
                m_released.acquire();
            }
        };
    }

    bool isReached() const { return m_isReached; }
    void release() { m_released.release(); }

private:
    std::atomic<int> m_seen = 0;
    std::atomic<bool> m_isReached = false;
    QSemaphore m_released;
};
