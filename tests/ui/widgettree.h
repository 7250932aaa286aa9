// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

class QWidget;

// The widgets and layouts of a window, one a line and indented as they lie in each other:
//
//   [0] startButton QPushButton; minimumSize=0x45; text=...
//
// A line has the place in the layout around it, the name, the class, and every property that differs from
// that of a new object of the class. What only follows from the place on the screen is left out, and so are
// the inner parts of Qt's lists, text panes and menus.
QStringList widgetTree(const QWidget &window);
