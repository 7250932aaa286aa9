// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>

// Measures the largest delay of a timer on the GUI thread while this object exists. A click would
// have waited as long.
class Lateness
{
public:
    Lateness()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(interval);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { note(); });
        m_clock.start();
        m_timer.start();
    }

    // Returns the largest delay until now, in milliseconds.
    qint64 worst()
    {
        note();
        return m_worst;
    }

private:
    static constexpr int interval = 5;

    void note() { m_worst = std::max(m_worst, m_clock.restart() - interval); }

    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_worst = 0;
};
