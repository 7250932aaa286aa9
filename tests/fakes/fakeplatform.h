// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/iconsource.h"
#include "platform/nativeplatform.h"

#include <QFileInfo>
#include <QStringList>

#include <functional>
#include <mutex>

// A platform that only records its calls, except that it starts helper processes as the native one
// does. It is installed while the object exists. Several jobs may use it at once.
class FakePlatform final : public NativePlatform, public IconSource
{
public:
    FakePlatform()
    {
        setPlatform(this);
        setIconSource(this);
    }
    ~FakePlatform() override
    {
        // The lock orders this after every call of a job. ThreadSanitizer does not see that Qt
        // waits for the thread.
        const std::lock_guard lock(m_mutex);
        setPlatform(nullptr);
        setIconSource(nullptr);
    }

    QStringList events;  // in order: "detached: ...", "pause: ... ms", "shell told"
    ExtractedIcon icon;  // the value that extractIcon() returns
    QString refusal;     // the value that reasonNotToUse() returns
    QString refusedPath; // refuses this path only; empty: refuses every path
    bool usesBackslashes = false;

    // Called before each moment, on the job's thread, with the moment's name: "use 7zr.exe" (or
    // another helper, which is started or read right after), "extract", "detached", "pause", "shell
    // told".
    std::function<void(const QString &moment)> before = [](const QString &) {
    };

    ExtractedIcon extractIcon(const QString &executable) override
    {
        before("extract");
        const std::lock_guard lock(m_mutex);
        extractedFrom = executable;
        return icon;
    }
    QString reasonNotToUse(const QString &path) override
    {
        before("use " + QFileInfo(path).fileName());
        const std::lock_guard lock(m_mutex);
        return refusedPath.isEmpty() || refusedPath == path ? refusal : QString();
    }
    void prepareStart(QProcess &process) override
    {
        const std::lock_guard lock(m_mutex);
        NativePlatform::prepareStart(process);
    }
    void startDetached(const QString &program) override
    {
        before("detached");
        note("detached: " + program);
    }
    void notifyAssociationsChanged() override
    {
        before("shell told");
        note("shell told");
    }
    void pause(std::chrono::milliseconds duration) override
    {
        before("pause");
        note(QStringLiteral("pause: %1 ms").arg(duration.count()));
    }
    QString nativePath(const QString &path) override
    {
        const std::lock_guard lock(m_mutex);
        return usesBackslashes ? QString(path).replace('/', '\\') : path;
    }

    QString extractedFrom;

private:
    void note(const QString &event)
    {
        const std::lock_guard lock(m_mutex);
        events << event;
    }

    std::mutex m_mutex;
};
