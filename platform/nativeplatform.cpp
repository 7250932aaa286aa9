// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/nativeplatform.h"

#include <QDir>
#include <QProcess>
#include <QThread>

// The engine starts only parts of Windows in this way; on other systems they are not found.
void NativePlatform::startDetached(const QString &program)
{
    QProcess::startDetached(program, {}, {}, nullptr);
}

void NativePlatform::pause(std::chrono::milliseconds duration)
{
    QThread::msleep(static_cast<unsigned long>(duration.count()));
}

QString NativePlatform::nativePath(const QString &path)
{
    return QDir::toNativeSeparators(path);
}
