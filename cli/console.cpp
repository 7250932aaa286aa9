// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/console.h"

#include "cli/logline.h"
#include "cli/terminal.h"

#include <algorithm>

namespace {

constexpr int barWidth = 40;

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

Console::Console(bool quiet) : m_quiet(quiet), m_drawsProgress(!quiet && isTerminal(Stream::Error))
{
}

void Console::showLogLine(const QString &line)
{
    const bool isInformation = kindOfLogLine(line) == LogLineKind::Information;
    if (isInformation && m_quiet) {
        return;
    }
    const int percentage = m_percentage;
    clearProgress();
    writeText(isInformation ? Stream::Output : Stream::Error, line + '\n');
    m_percentage = percentage;
    drawProgress();
}

void Console::showProgress(int percentage)
{
    if (m_drawsProgress && percentage != m_percentage) {
        m_percentage = percentage;
        drawProgress();
    }
}

void Console::showInformation(const QString &line)
{
    if (!m_quiet) {
        clearProgress();
        writeText(Stream::Output, line + '\n');
    }
}

void Console::showMessage(const QString &message)
{
    clearProgress();
    writeText(Stream::Error, "kestrelpack-cli: " + message + '\n');
}

void Console::clearProgress()
{
    if (m_percentage >= 0) {
        m_percentage = -1;
        writeText(Stream::Error, progressBarEraser());
    }
}

void Console::drawProgress()
{
    if (m_percentage >= 0) {
        writeText(Stream::Error, '\r' + progressBarText(m_percentage));
    }
}
