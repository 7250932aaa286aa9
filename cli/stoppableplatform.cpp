// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/stoppableplatform.h"

#include "cli/interrupt.h"
#include "cli/jobgate.h"

#include <QProcess>

StoppablePlatform::StoppablePlatform(JobGate &gate) : m_gate(gate) {}

void StoppablePlatform::killHelper()
{
    killProcess(m_helperId);
}

QByteArray StoppablePlatform::iconFile(const QString &executable)
{
    return m_usesProgramIcon ? NativePlatform::iconFile(executable) : QByteArray();
}

void StoppablePlatform::prepareStart(QProcess &process)
{
    NativePlatform::prepareStart(process);
    // The same object may be started several times, but only one connection is needed.
    QObject::disconnect(&process, &QProcess::stateChanged, nullptr, nullptr);
    QObject::connect(&process, &QProcess::stateChanged, &process, [this, &process] {
        m_helperId = process.state() == QProcess::Running ? process.processId() : 0;
    });
}

void StoppablePlatform::startDetached(const QString &) {}

void StoppablePlatform::pause(std::chrono::milliseconds)
{
    m_gate.pass();
}
