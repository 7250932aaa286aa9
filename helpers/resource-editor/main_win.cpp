// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/resource-editor/editor.h"

// Wide arguments: the narrow ones lose every letter that the user's code page has not.
int wmain(int argc, wchar_t **argv)
{
    return static_cast<int>(runEditor(Arguments(argv + (argc > 0 ? 1 : 0), argv + argc)));
}
