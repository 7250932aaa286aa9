// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/platform.h"

// Hands everything on to the system's own platform; what is to be different is overridden.
class ForwardingPlatform : public Platform
{
public:
    ExtractedIcon extractIcon(const QString &executable) override;
    QString refusalToUse(const QString &path) override;
    void prepareStart(QProcess &process) override;
    void startDetached(const QString &program) override;
    void notifyAssociationsChanged() override;
    void pause(std::chrono::milliseconds duration) override;
    QString nativePath(const QString &path) override;

private:
    const std::unique_ptr<Platform> m_native = makeNativePlatform();
};
