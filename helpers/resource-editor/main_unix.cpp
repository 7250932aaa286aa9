// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/resource-editor/editor.h"

#include <csignal>

int main(int argc, char **argv)
{
    // A file that outgrows the user's limit is an error like any other, not the process's end.
    std::signal(SIGXFSZ, SIG_IGN);
    return static_cast<int>(runEditor(Arguments(argv + (argc > 0 ? 1 : 0), argv + argc)));
}
