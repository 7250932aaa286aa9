// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/resource-editor/editor.h"

// Takes wide arguments: the narrow ones lose letters that the code page does not have.
int wmain(int argc, wchar_t **argv)
{
    return runEditorProgram(Arguments(argv + (argc > 0 ? 1 : 0), argv + argc));
}
