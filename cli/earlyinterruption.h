// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/interrupt.h"

#include <QCoreApplication>

#include <optional>

// Notes an interruption while the program works on the main thread, without its event loop.
class EarlyInterruption
{
public:
    // `watcher` is borrowed and must outlive this object.
    explicit EarlyInterruption(const InterruptWatcher &watcher)
        : m_connection(QObject::connect(&watcher, &InterruptWatcher::interrupted, qApp,
                                        [this](int cause) { m_cause = cause; }))
    {
    }
    ~EarlyInterruption() { QObject::disconnect(m_connection); }
    EarlyInterruption(const EarlyInterruption &) = delete;
    EarlyInterruption &operator=(const EarlyInterruption &) = delete;

    // Asks the system. Call it often.
    bool hasCome()
    {
        QCoreApplication::processEvents();
        return m_cause.has_value();
    }

    // For endAsInterrupted(); nothing if hasCome() has never returned true.
    std::optional<int> cause() const { return m_cause; }

private:
    std::optional<int> m_cause;
    const QMetaObject::Connection m_connection;
};
