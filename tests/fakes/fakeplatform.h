// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "icons/platform/platform.h"

#include <QStringList>

// A platform that does nothing of what it is asked, but writes it down; helper processes are started
// as on the native one. Installs itself while it lives.
class FakePlatform final : public Platform
{
public:
    FakePlatform() { setPlatform(this); }
    ~FakePlatform() override { setPlatform(nullptr); }

    QStringList events;  // in order: "detached: ...", "pause: ... ms", "shell told"
    ExtractedIcon icon;  // what extractIcon() gives
    QString refusal;     // what refusalToUse() answers
    QString refusedPath; // for this path only; empty: for all
    bool usesBackslashes = false;

    ExtractedIcon extractIcon(const QString &executable) override
    {
        extractedFrom = executable;
        return icon;
    }
    QString refusalToUse(const QString &path) override
    {
        return refusedPath.isEmpty() || refusedPath == path ? refusal : QString();
    }
    void prepareStart(QProcess &) override {}
    void startDetached(const QString &program) override { events << "detached: " + program; }
    void notifyAssociationsChanged() override { events << "shell told"; }
    void pause(std::chrono::milliseconds duration) override
    {
        events << QStringLiteral("pause: %1 ms").arg(duration.count());
    }
    QString nativePath(const QString &path) override
    {
        return usesBackslashes ? QString(path).replace('/', '\\') : path;
    }

    QString extractedFrom;
};
