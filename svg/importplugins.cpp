// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// Compiled into each program that links kestrelpack_svg; registers the two plugins before main.

#include <QtPlugin>

Q_IMPORT_PLUGIN(SvgImagePlugin)
Q_IMPORT_PLUGIN(SvgIconPlugin)
