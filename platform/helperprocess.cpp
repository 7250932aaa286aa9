// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/helperprocess.h"

#include "platform/platform.h"

HelperProcess::~HelperProcess()
{
    // QProcess would do the same, but it would also print a warning.
    if (state() != QProcess::NotRunning) {
        kill();
        waitForFinished();
    }
}

void HelperProcess::startHelper(const QString &program, const QStringList &arguments)
{
    if (state() != QProcess::NotRunning) {
        return;
    }
    const QString refusal = platform().reasonNotToUse(program);
    if (!refusal.isEmpty()) {
        setErrorString(refusal);
        return;
    }
    platform().prepareStart(*this);
    start(program, arguments, QIODevice::ReadWrite);
}
