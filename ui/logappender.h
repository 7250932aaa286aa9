// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QQueue>
#include <QString>
#include <QTimer>

#include <functional>

class QTextEdit;

// Appends log lines to a text pane, each as a paragraph, in order. A few lines appear at once; a flood
// is taken in slices, between which the window paints and answers. None is lost, but when so much
// waits that memory would run out: then the oldest of them give way to a line that counts them. Lives
// on the GUI thread.
class LogAppender : public QObject
{
    Q_OBJECT

public:
    // 32 MiB, which is 100,000 lines of 167 characters.
    static constexpr qsizetype usualMostWaiting = 16 * 1048576;

    // The pane is the parent. It keeps no undo history from here on. `mostWaiting`: in characters.
    explicit LogAppender(QTextEdit *pane, qsizetype mostWaiting = usualMostWaiting);

    void append(const QString &line);

    // Empties the pane; lines that still wait are dropped.
    void clear();

    // Calls `action` when every line appended so far is in the pane, which can be at once. An earlier
    // action that still waits is replaced.
    void whenThrough(std::function<void()> action);

private:
    void take(const QString &line);
    void show(const QString &line);
    void dropOldest();
    void takeSlice();

    QTextEdit *const m_pane;
    const qsizetype m_mostWaiting;
    QTimer m_turn;                 // fires in the next turn of the event loop
    qsizetype m_shownThisTurn = 0; // in lines of usual length
    QQueue<QString> m_waiting;
    qsizetype m_waitingCharacters = 0;
    qsizetype m_dropped = 0; // lines, since the last one that was shown
    std::function<void()> m_action;
};
