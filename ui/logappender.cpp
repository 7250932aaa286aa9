// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "ui/logappender.h"

#include <QElapsedTimer>
#include <QTextBlock>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>

#include <utility>

namespace {

// What is shown at once in one turn of the event loop: about 5 ms of work.
constexpr int linesShownAtOnce = 250;

// Long against the repainting that follows each slice, short against what a person notices.
constexpr qint64 sliceMilliseconds = 40;

constexpr QChar backspace(u'\b');

// Makes the backspaces from the block on take no room: a terminal goes back over them, but a font has
// only a box for them. They stay in the text.
void hideBackspaces(QTextDocument *document, int firstBlock)
{
    QTextCharFormat hidden;
    hidden.setProperty(QTextFormat::FontPixelSize, 1);
    hidden.setForeground(Qt::transparent);
    QTextCursor cursor(document);
    const int first = document->findBlockByNumber(firstBlock).position();
    for (int position = first; position < document->characterCount(); ++position) {
        if (document->characterAt(position) == backspace) {
            cursor.setPosition(position);
            cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
            cursor.mergeCharFormat(hidden);
        }
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
    const int lastBlock = m_pane->document()->blockCount() - 1;
    // QTextEdit would take a file name such as "<b>" for markup.
    if (Qt::mightBeRichText(line)) {
        m_pane->append(QStringLiteral("<span style=\"white-space:pre-wrap\">%1</span>")
                           .arg(line.toHtmlEscaped()));
    } else {
        m_pane->append(line);
    }
    if (line.contains(backspace)) {
        hideBackspaces(m_pane->document(), lastBlock);
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
