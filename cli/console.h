// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QJsonObject>
#include <QString>

// Shows a job on the terminal: log lines on standard output, warnings and errors on standard error,
// and a progress bar if standard error is a terminal. With Style::Json it writes one JSON object
// per line to standard output, and nothing else (cli/README.md describes the events). Use it on one
// thread only.
class Console
{
public:
    enum class Style { Full, Quiet, Json };

    explicit Console(Style style);

    // Shows one line or block of the engine's log, without the archiver's lines of progress.
    void showLogLine(const QString &line);
    // `percentage` is 0 to 100.
    void showProgress(int percentage);

    // These write texts of this program. On standard error, a text begins with the program's name.
    void showInformation(const QString &line);
    void showWarning(const QString &message);
    void showMessage(const QString &message);

    // With Style::Json, writes the event `name` with the given values. Otherwise does nothing.
    void showEvent(const QString &name, QJsonObject values);

    // Removes the progress bar.
    void clearProgress();

    bool isJson() const { return m_style == Style::Json; }

private:
    void drawProgress();

    const Style m_style;
    const bool m_drawsProgress;
    int m_percentage = -1; // the last one shown; -1 if no bar is shown
};

// Returns the bar for `percentage` without a line end: "[########............]  40 %".
QString progressBarText(int percentage);

// Returns the text that removes a bar: blanks over it. It contains no escape sequences, because a
// Windows console shows them as they are unless a mode is set, which other programs would share.
QString progressBarEraser();
