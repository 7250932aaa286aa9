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

// The number of lines shown at once in one turn of the event loop: about 20 ms of work.
constexpr qsizetype linesShownAtOnce = 250;
constexpr qsizetype usualLength = 64;

// A longer text (in characters) is split into pieces of whole lines, because the pane needs one
// second for a million characters.
constexpr qsizetype longText = 4096;

// Much longer than the repainting after each slice, but too short for a person to notice.
constexpr qint64 sliceMilliseconds = 40;

constexpr QChar backspace(u'\b');

// A terminal moves back for a backspace, but a font draws a box. This format keeps backspaces in
// the text without showing them. Without the style strategy Qt would search every font for the
// character.
QTextCharFormat formatOfBackspaces()
{
    QTextCharFormat format;
    format.setProperty(QTextFormat::FontPixelSize, 1);
    format.setFontStyleStrategy(QFont::NoFontMerging);
    format.setForeground(Qt::transparent);
    return format;
}

// Inserts the text unchanged; QTextEdit::append() would read a file name such as "<b>" as markup.
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

LogAppender::LogAppender(QTextEdit *pane, qsizetype mostWaiting)
    : QObject(pane)
    , m_pane(pane)
    , m_mostWaiting(mostWaiting)
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
    if (line.size() <= longText) {
        take(line);
        return;
    }
    for (qsizetype start = 0; start <= line.size();) {
        qsizetype end = line.indexOf('\n', start + longText);
        end = end < 0 ? line.size() : end;
        const bool isPair = end > start && end < line.size() && line[end - 1] == '\r';
        take(line.mid(start, end - start - (isPair ? 1 : 0)));
        start = end + 1;
    }
}

void LogAppender::take(const QString &line)
{
    if (m_waiting.isEmpty() && m_shownThisTurn < linesShownAtOnce) {
        m_shownThisTurn += 1 + line.size() / usualLength;
        show(line);
        return;
    }
    m_waiting.enqueue(line);
    m_waitingCharacters += line.size();
    while (m_waitingCharacters > m_mostWaiting && m_waiting.size() > 1) {
        dropOldest();
    }
}

void LogAppender::dropOldest()
{
    const QString line = m_waiting.dequeue();
    m_waitingCharacters -= line.size();
    m_dropped += 1 + line.count('\n');
}

void LogAppender::clear()
{
    m_waiting.clear();
    m_waitingCharacters = 0;
    m_dropped = 0;
    m_pane->clear();
}

void LogAppender::whenShown(std::function<void()> action)
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
    while (!m_waiting.isEmpty()) {
        if (elapsed.hasExpired(sliceMilliseconds)) {
            m_turn.start();
            return;
        }
        if (m_dropped > 0) {
            show(tr("（此处省略 %1 行）").arg(std::exchange(m_dropped, qsizetype(0))));
        }
        const QString line = m_waiting.dequeue();
        m_waitingCharacters -= line.size();
        show(line);
    }
    if (m_action) {
        std::exchange(m_action, nullptr)();
    }
}
