// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/console.h"

#include "cli/language.h"
#include "cli/logline.h"
#include "cli/terminal.h"

#include <QJsonDocument>

#include <algorithm>

namespace {

constexpr int barWidth = 40;

QString eventNameOf(LogLineKind kind)
{
    switch (kind) {
    case LogLineKind::Warning:
        return QStringLiteral("warning");
    case LogLineKind::Error:
        return QStringLiteral("error");
    case LogLineKind::Information:
        break;
    }
    return QStringLiteral("log");
}

} // namespace

QString progressBarText(int percentage)
{
    const int bounded = std::clamp(percentage, 0, 100);
    const int filled = bounded * barWidth / 100;
    return QStringLiteral("[%1%2] %3 %")
        .arg(QString(filled, '#'), QString(barWidth - filled, '.'))
        .arg(bounded, 3);
}

QString progressBarEraser()
{
    return '\r' + QString(progressBarText(0).size(), ' ') + '\r';
}

Console::Console(Style style)
    : m_style(style)
    , m_drawsProgress(style == Style::Full && isTerminal(Stream::Error))
{
}

void Console::showLogLine(const QString &line)
{
    const LogLineKind kind = kindOfLogLine(line);
    const QString shown = withoutProgress(line);
    if (shown.isEmpty() || (kind == LogLineKind::Information && m_style == Style::Quiet)) {
        return;
    }
    if (isJson()) {
        showEvent(eventNameOf(kind), {{"text", shown}});
        return;
    }
    const int percentage = m_percentage;
    clearProgress();
    writeText(kind == LogLineKind::Information ? Stream::Output : Stream::Error, shown + '\n');
    m_percentage = percentage;
    drawProgress();
}

void Console::showProgress(int percentage)
{
    if (percentage == m_percentage) {
        return;
    }
    if (isJson()) {
        m_percentage = percentage;
        showEvent("progress", {{"percent", percentage}});
    } else if (m_drawsProgress) {
        m_percentage = percentage;
        drawProgress();
    }
}

void Console::showInformation(const QString &line)
{
    if (isJson()) {
        showEvent("log", {{"text", line}});
    } else if (m_style == Style::Full) {
        clearProgress();
        writeText(Stream::Output, line + '\n');
    }
}

void Console::showWarning(const QString &message)
{
    if (isJson()) {
        showEvent("warning", {{"text", message}});
    } else {
        clearProgress();
        writeText(Stream::Error, text("kestrelpack-cli: warning: %1").arg(message) + '\n');
    }
}

void Console::showMessage(const QString &message)
{
    if (isJson()) {
        showEvent("error", {{"text", message}});
    } else {
        clearProgress();
        writeText(Stream::Error, "kestrelpack-cli: " + message + '\n');
    }
}

void Console::showEvent(const QString &name, QJsonObject values)
{
    if (isJson()) {
        values.insert("event", name);
        writeText(Stream::Output,
                  QString::fromUtf8(QJsonDocument(values).toJson(QJsonDocument::Compact)) + '\n');
    }
}

void Console::clearProgress()
{
    if (m_drawsProgress && m_percentage >= 0) {
        m_percentage = -1;
        writeText(Stream::Error, progressBarEraser());
    }
}

void Console::drawProgress()
{
    if (m_drawsProgress && m_percentage >= 0) {
        writeText(Stream::Error, '\r' + progressBarText(m_percentage));
    }
}
