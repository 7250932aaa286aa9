// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/terminal.h"

#include <QByteArray>

#include <csignal>
#include <cstdio>

#include <unistd.h>

void prepareTerminal()
{
    // A reader that goes away ("| head") must not end the program in the middle of a job.
    std::signal(SIGPIPE, SIG_IGN);
}

bool isTerminal(Stream stream)
{
    return isatty(stream == Stream::Output ? STDOUT_FILENO : STDERR_FILENO) == 1;
}

void writeText(Stream stream, const QString &text)
{
    const QByteArray bytes = text.toLocal8Bit();
    std::FILE *const file = stream == Stream::Output ? stdout : stderr;
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), file);
    std::fflush(file);
}
