// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QElapsedTimer>
#include <QJsonObject>
#include <QString>

// Measures how long each stage of a job takes. Use it on one thread.
class StageClock
{
public:
    // Ends the stage before, and begins the stage `name`. The same stage can begin several times.
    void begin(const QString &name)
    {
        end();
        m_name = name;
        m_timer.start();
    }

    void end()
    {
        if (!m_name.isEmpty()) {
            const double passed = static_cast<double>(m_timer.nsecsElapsed()) / 1e9;
            m_seconds[m_name] = m_seconds[m_name].toDouble() + passed;
            m_name.clear();
        }
    }

    // The seconds of each stage that has ended, by its name.
    const QJsonObject &seconds() const { return m_seconds; }

private:
    QElapsedTimer m_timer;
    QString m_name; // empty: no stage runs
    QJsonObject m_seconds;
};
