// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

class QWidget;

// Lists the widgets and layouts of a window, one on each line, indented by depth:
//
//   [0] startButton QPushButton; minimumSize=0x45; text=...
//
// A line has the place in the parent layout, the name, the class, and every property that differs
// from a new object of the class. Properties that only follow from the place on the screen are left
// out, and so are the inner parts of Qt's lists, text panes and menus.
QStringList widgetTree(const QWidget &window);
