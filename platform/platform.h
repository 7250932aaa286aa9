// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>
#include <QString>

#include <chrono>
#include <memory>

class QProcess;

// The first icon of a program, as far as it could be had.
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

// All that the engine asks of the operating system beyond Qt. One implementation per system is
// chosen when the project is built; tests put their own in its place. Called on the thread that
// runs the job only.
class Platform
{
public:
    virtual ~Platform() = default;

    // Takes the icon out of the program file `executable`.
    virtual ExtractedIcon extractIcon(const QString &executable) = 0;

    // Why the file at `path`, found in the temporary directory, must not be used: one English
    // sentence, or empty when nothing speaks against it (a file that is not there included).
    virtual QString refusalToUse(const QString &path) = 0;

    // Last settings on a helper process right before it starts.
    virtual void prepareStart(QProcess &process) = 0;

    // Starts `program` without arguments and does not wait. The string is handed on as it is, blanks
    // included, without a command interpreter. Failure is not reported.
    virtual void startDetached(const QString &program) = 0;

    // Tells the shell that file associations, and with them icons, have changed.
    virtual void notifyAssociationsChanged() = 0;

    // Blocks the calling thread.
    virtual void pause(std::chrono::milliseconds duration) = 0;

    // `path` with the separators that external programs expect.
    virtual QString nativePath(const QString &path) = 0;
};

// The platform in use. It is the system's own until setPlatform() is called.
Platform &platform();

// Puts `replacement` (borrowed, must outlive its use) in place of the system's own; nullptr brings
// that one back. Not to be called while a job runs.
void setPlatform(Platform *replacement);

// The system's own platform; implemented in platform_win.cpp or platform_unix.cpp.
std::unique_ptr<Platform> makeNativePlatform();
