// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/program.h"

int main(int argc, char *argv[])
{
    return runTerminalProgram(argc, argv);
}
