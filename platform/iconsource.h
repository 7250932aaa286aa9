// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>
#include <QString>

// The first icon of a program, or the reason why there is none.
struct ExtractedIcon
{
    enum class Outcome {
        Extracted, // `image` has the pixels; it is null if they could not be converted
        NoIcon,    // the file has no icon, or is not a program
        NoIconInfo // there is an icon, but the system returns no information about it
    };

    Outcome outcome = Outcome::NoIcon;
    QImage image; // Format_ARGB32, top row first
};

// Reads icons of programs as pixels. It is apart from Platform because it needs Qt Gui, which the
// terminal program does not link. Tests replace it. Only the thread that runs the job calls it.
class IconSource
{
public:
    virtual ~IconSource() = default;

    // Reads the first icon of the program file `executable`.
    virtual ExtractedIcon extractIcon(const QString &executable) = 0;
};

// The source in use: the one of this operating system until setIconSource() is called.
IconSource &iconSource();

// Replaces the source by `replacement`, which is borrowed and must outlive its use; nullptr restores
// the one of the operating system. Must not be called while a job runs.
void setIconSource(IconSource *replacement);

// What the operating system's source returns; in iconsource_unix.cpp and iconsource_win.cpp.
ExtractedIcon extractNativeIcon(const QString &executable);
