// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/terminal.h"

#include <QByteArray>

#include <csignal>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace {

// A caller may start the program without standard streams. The next files that are opened would then be taken
// for them: what is written to one would be read from another.
void openMissingStreams()
{
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (fcntl(stream, F_GETFD) == -1) {
            [[maybe_unused]] const int file
                = open("/dev/null", O_RDWR); // gets the lowest free number
        }
    }
}

} // namespace

void prepareTerminal()
{
    openMissingStreams();
    // A reader that goes away ("| head") must not end the program in the middle of a job.
    std::signal(SIGPIPE, SIG_IGN);
    // Nor must a limit on the size of files ("ulimit -f"): a write past it is an error then.
    std::signal(SIGXFSZ, SIG_IGN);
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
