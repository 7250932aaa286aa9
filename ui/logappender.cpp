// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "ui/logappender.h"

#include <QElapsedTimer>
#include <QScrollBar>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>

#include <algorithm>
#include <utility>

namespace {

// What is shown at once in one turn of the event loop: some 20 ms of work.
constexpr int linesShownAtOnce = 250;

// Long against the repainting that follows each slice, short against what a person notices.
constexpr qint64 sliceMilliseconds = 40;

constexpr QChar backspace(u'\b');

// A terminal goes back over backspaces, but a font has only a box for them; they stay in the text and
// take no room. Without the strategy every font of the system would be searched for them.
QTextCharFormat formatOfBackspaces()
{
    QTextCharFormat format;
    format.setProperty(QTextFormat::FontPixelSize, 1);
    format.setFontStyleStrategy(QFont::NoFontMerging);
    format.setForeground(Qt::transparent);
    return format;
}

// Inserts the text as it stands; QTextEdit::append() would take a file name such as "<b>" for markup.
void insertPlain(QTextCursor &cursor, QStringView text)
{
    while (!text.isEmpty()) {
        const bool hidden = text.front() == backspace;
        const auto *end = std::find_if(text.begin(), text.end(), [hidden](QChar character) {
            return (character == backspace) != hidden;
        });
        const auto length = std::distance(text.begin(), end);
        cursor.insertText(text.first(length).toString(),
                          hidden ? formatOfBackspaces() : QTextCharFormat());
        text = text.sliced(length);
    }
}

} // namespace

LogAppender::LogAppender(QTextEdit *pane)
    : QObject(pane)
    , m_pane(pane)
{
    m_pane->setUndoRedoEnabled(false);
    m_turn.setInterval(0);
    m_turn.setSingleShot(true);
    connect(&m_turn, &QTimer::timeout, this, &LogAppender::takeSlice);
}

void LogAppender::append(const QString &line)
{
    if (!m_turn.isActive()) {
        m_turn.start();
    }
    if (m_waiting.isEmpty() && m_shownThisTurn < linesShownAtOnce) {
        ++m_shownThisTurn;
        show(line);
    } else {
        m_waiting.append(line);
    }
}

void LogAppender::clear()
{
    m_waiting.clear();
    m_next = 0;
    m_pane->clear();
}

void LogAppender::whenThrough(std::function<void()> action)
{
    if (m_waiting.isEmpty()) {
        action();
    } else {
        m_action = std::move(action);
    }
}

void LogAppender::show(const QString &line)
{
    QScrollBar *bar = m_pane->verticalScrollBar();
    const bool atBottom = bar->value() >= bar->maximum();

    QTextCursor cursor(m_pane->document());
    cursor.beginEditBlock();
    cursor.movePosition(QTextCursor::End);
    if (!m_pane->document()->isEmpty()) {
        cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
    }
    insertPlain(cursor, line);
    cursor.endEditBlock();

    if (atBottom) {
        bar->setValue(bar->maximum());
    }
}

void LogAppender::takeSlice()
{
    m_shownThisTurn = 0;
    QElapsedTimer elapsed;
    elapsed.start();
    while (m_next < m_waiting.size()) {
        if (elapsed.hasExpired(sliceMilliseconds)) {
            m_turn.start();
            return;
        }
        show(m_waiting[m_next++]);
    }
    m_waiting.clear();
    m_next = 0;
    if (m_action) {
        std::exchange(m_action, nullptr)();
    }
}
