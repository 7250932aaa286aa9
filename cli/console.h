// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// What the person at the terminal sees of a job: log lines on standard output, warnings and errors on
// standard error, and a progress bar on standard error while that is a terminal. Used on one thread.
class Console
{
public:
    explicit Console(bool quiet);

    // One line or block of the engine's log, written as it is.
    void showLogLine(const QString &line);
    // `percentage` is 0 to 100.
    void showProgress(int percentage);

    // Our own words; a message gets the program's name in front.
    void showInformation(const QString &line);
    void showMessage(const QString &message);

    // Takes the progress bar away.
    void clearProgress();

private:
    void drawProgress();

    const bool m_quiet;
    const bool m_drawsProgress;
    int m_percentage = -1; // -1: no bar is shown
};

// The bar for `percentage`, without a line end: "[########............]  40 %".
QString progressBarText(int percentage);
