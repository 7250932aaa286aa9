// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/platform.h"

// The platform for this operating system. A program that needs other behaviour derives a class and
// overrides functions.
class NativePlatform : public Platform
{
public:
    // These three are in nativeplatform_unix.cpp and nativeplatform_win.cpp.
    QString reasonNotToUse(const QString &path) override;
    void prepareStart(QProcess &process) override;
    void notifyAssociationsChanged() override;

    QByteArray iconFile(const QString &executable) override;
    void startDetached(const QString &program) override;
    void pause(std::chrono::milliseconds duration) override;
    QString nativePath(const QString &path) override;
};
