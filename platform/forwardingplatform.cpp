// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/forwardingplatform.h"

ExtractedIcon ForwardingPlatform::extractIcon(const QString &executable)
{
    return m_native->extractIcon(executable);
}

QString ForwardingPlatform::refusalToUse(const QString &path)
{
    return m_native->refusalToUse(path);
}

void ForwardingPlatform::prepareStart(QProcess &process)
{
    m_native->prepareStart(process);
}

void ForwardingPlatform::startDetached(const QString &program)
{
    m_native->startDetached(program);
}

void ForwardingPlatform::notifyAssociationsChanged()
{
    m_native->notifyAssociationsChanged();
}

void ForwardingPlatform::pause(std::chrono::milliseconds duration)
{
    m_native->pause(duration);
}

QString ForwardingPlatform::nativePath(const QString &path)
{
    return m_native->nativePath(path);
}
