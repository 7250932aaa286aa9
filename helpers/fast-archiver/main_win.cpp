// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/program.h"

// The run time must not replace the argument FOLDER\* by the names in the folder; some builds of
// mingw-w64 do that by default.
extern "C" {
int _dowildcard = 0;
}

// Takes wide arguments: the narrow ones lose letters that the code page does not have.
int wmain(int argc, wchar_t **argv)
{
    return fast::runArchiverProgram(fast::Arguments(argv + (argc > 0 ? 1 : 0), argv + argc));
}
