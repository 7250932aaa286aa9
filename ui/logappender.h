// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>

class QTextEdit;

// Appends log lines to a text pane, each as a paragraph, in order, none lost. A few lines appear at
// once; a flood is taken in slices, between which the window paints and answers.
class LogAppender : public QObject
{
    Q_OBJECT

public:
    // The pane is the parent. It keeps no undo history from here on.
    explicit LogAppender(QTextEdit *pane);

    void append(const QString &line);

    // Empties the pane; lines that still wait are dropped.
    void clear();

    // Calls `action` when every line appended so far is in the pane, which can be at once. An earlier
    // action that still waits is replaced.
    void whenThrough(std::function<void()> action);

private:
    void show(const QString &line);
    void takeSlice();

    QTextEdit *const m_pane;
    QTimer m_turn; // fires in the next turn of the event loop
    int m_shownThisTurn = 0;
    QStringList m_waiting;
    qsizetype m_next = 0; // first line of m_waiting that is not shown
    std::function<void()> m_action;
};
