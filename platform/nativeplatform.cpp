// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/nativeplatform.h"

#include "helpers/pe/iconofprogram.h"
#include "platform/nativepath.h"

#include <QDir>
#include <QProcess>
#include <QThread>

QByteArray NativePlatform::iconFile(const QString &executable)
{
    const auto icon = pe::iconOfProgram(toNativePath(executable));
    if (icon.hasError() || !icon.value()) {
        return {};
    }
    return QByteArray(reinterpret_cast<const char *>(icon.value()->data()),
                      static_cast<qsizetype>(icon.value()->size()));
}

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
