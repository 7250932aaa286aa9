// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/nativeplatform.h"

#include "platform/trust_unix.h"

#include <QProcess>

#ifdef __linux__
#include <csignal>

#include <sys/prctl.h>
#endif

QString NativePlatform::reasonNotToUse(const QString &path)
{
    return untrustedFileReason(path);
}

// A helper must not continue to write after its job was killed.
void NativePlatform::prepareStart(QProcess &process)
{
#ifdef __linux__
    process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
#else
    Q_UNUSED(process)
#endif
}

// There is no icon cache to refresh.
void NativePlatform::notifyAssociationsChanged() {}
