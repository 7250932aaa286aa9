// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QQueue>
#include <QString>
#include <QTimer>

#include <functional>

class QTextEdit;

// Appends log lines to a text pane in order, each as a paragraph. A few lines appear at once. A
// flood of lines is shown in slices; between two slices the window paints and handles events. If
// more than `mostWaiting` characters wait, the oldest waiting lines are dropped, and one line with
// their number is shown instead. Otherwise no line is lost. Use it on the GUI thread.
class LogAppender : public QObject
{
    Q_OBJECT

public:
    // In characters: 32 MiB of memory, or 100,000 lines of 167 characters.
    static constexpr qsizetype usualMostWaiting = 16 * 1048576;

    // `pane` becomes the parent and loses its undo history. `mostWaiting` is in characters.
    explicit LogAppender(QTextEdit *pane, qsizetype mostWaiting = usualMostWaiting);

    void append(const QString &line);

    // Empties the pane and drops the lines that still wait.
    void clear();

    // Calls `action` when every line appended so far is in the pane; this can be at once. Replaces
    // an earlier action that still waits.
    void whenShown(std::function<void()> action);

private:
    void take(const QString &line);
    void show(const QString &line);
    void dropOldest();
    void takeSlice();

    QTextEdit *const m_pane;
    const qsizetype m_mostWaiting;
    QTimer m_turn;                 // fires in the next turn of the event loop
    qsizetype m_shownThisTurn = 0; // counted in lines of `usualLength`
    QQueue<QString> m_waiting;
    qsizetype m_waitingCharacters = 0;
    qsizetype m_dropped = 0; // number of lines dropped since a line was last shown
    std::function<void()> m_action;
};
