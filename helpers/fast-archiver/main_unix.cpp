// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/program.h"

#include <csignal>

int main(int argc, char **argv)
{
    // A file that grows beyond the user's limit is then an error like any other, and does not end
    // the process.
    std::signal(SIGXFSZ, SIG_IGN);
    return fast::runArchiverProgram(fast::Arguments(argv + (argc > 0 ? 1 : 0), argv + argc));
}
