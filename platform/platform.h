// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>
#include <QString>

#include <chrono>

class QProcess;

// The first icon of a program, or why there is none.
struct ExtractedIcon
{
    enum class Outcome {
        Extracted, // `image` holds the pixels; a null image means that they could not be converted
        NoIcon,    // the file holds no icon, or is no program
        NoIconInfo // there is an icon, but the system tells nothing about it
    };

    Outcome outcome = Outcome::NoIcon;
    QImage image; // Format_ARGB32, top row first
};

// What the engine asks of the operating system, beyond Qt. NativePlatform is the implementation for this
// system; tests replace it. Only the thread that runs the job calls it.
class Platform
{
public:
    virtual ~Platform() = default;

    // Takes the icon out of the program file `executable`.
    virtual ExtractedIcon extractIcon(const QString &executable) = 0;

    // Why the file at `path`, found in the temporary directory, must not be used: one English
    // sentence. Empty if it may be used, or is missing.
    virtual QString reasonNotToUse(const QString &path) = 0;

    // Sets options of a helper process just before it starts.
    virtual void prepareStart(QProcess &process) = 0;

    // Starts `program` without arguments and does not wait. The whole string is the program's name, blanks
    // included; no command interpreter sees it. A failure is not reported.
    virtual void startDetached(const QString &program) = 0;

    // Tells the shell that file associations, and with them icons, have changed.
    virtual void notifyAssociationsChanged() = 0;

    // Blocks the calling thread.
    virtual void pause(std::chrono::milliseconds duration) = 0;

    // `path` with the separators that external programs expect.
    virtual QString nativePath(const QString &path) = 0;
};

// The platform in use: a NativePlatform until setPlatform() is called.
Platform &platform();

// Replaces the platform by `replacement`, which is borrowed and must outlive its use; nullptr brings the
// native one back. Must not be called while a job runs.
void setPlatform(Platform *replacement);
