// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// Shows a job on the terminal: log lines on standard output, warnings and errors on standard error,
// and a progress bar if standard error is a terminal. Use it on one thread only.
class Console
{
public:
    explicit Console(bool quiet);

    // Writes one line or block of the engine's log, unchanged.
    void showLogLine(const QString &line);
    // `percentage` is 0 to 100.
    void showProgress(int percentage);

    // These two write texts of this program. A message begins with the program's name.
    void showInformation(const QString &line);
    void showMessage(const QString &message);

    // Removes the progress bar.
    void clearProgress();

private:
    void drawProgress();

    const bool m_quiet;
    const bool m_drawsProgress;
    int m_percentage = -1; // -1 if no bar is shown
};

// Returns the bar for `percentage` without a line end: "[########............]  40 %".
QString progressBarText(int percentage);

// Returns the text that removes a bar: blanks over it. It contains no escape sequences, because a
// Windows console shows them as they are unless a mode is set, which other programs would share.
QString progressBarEraser();
