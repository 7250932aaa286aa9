// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/terminal.h"

#include <QByteArray>

#include <csignal>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace {

// A caller may start the program without standard streams. The next opened files would then get
// their numbers, and output for the terminal would go into these files.
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
    // A reader that ends early ("| head") must not end the program in the middle of a job.
    std::signal(SIGPIPE, SIG_IGN);
    // The same for a limit on file sizes ("ulimit -f"): a write beyond it then returns an error.
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
