// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>

class QProcess;

// The engine's requests to the operating system, beyond Qt. NativePlatform is the implementation
// for this system; tests replace it. Only the thread that runs the job calls it.
class Platform
{
public:
    virtual ~Platform() = default;

    // Returns the first icon of the program file `executable` as an ICO file with its largest image,
    // in its original form. Returns nothing if there is none. (As pixels: platform/iconsource.h.)
    virtual QByteArray iconFile(const QString &executable) = 0;

    // Returns why the file at `path`, found in the temporary directory, must not be used, as one
    // English sentence. Returns an empty text if it may be used or is missing.
    virtual QString reasonNotToUse(const QString &path) = 0;

    // Sets options of a helper process just before it starts.
    virtual void prepareStart(QProcess &process) = 0;

    // Starts `program` without arguments and does not wait for it. The whole string is the
    // program's name, including spaces; no command interpreter is used. A failure is not reported.
    virtual void startDetached(const QString &program) = 0;

    // Tells the shell that file associations have changed, so that it reloads icons.
    virtual void notifyAssociationsChanged() = 0;

    // Blocks the calling thread for `duration`.
    virtual void pause(std::chrono::milliseconds duration) = 0;

    // Returns `path` with the separators that external programs expect.
    virtual QString nativePath(const QString &path) = 0;
};

// The platform in use: a NativePlatform until setPlatform() is called.
Platform &platform();

// Replaces the platform by `replacement`, which is borrowed and must outlive its use; nullptr
// restores the native one. Must not be called while a job runs.
void setPlatform(Platform *replacement);
