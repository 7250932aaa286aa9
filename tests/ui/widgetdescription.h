// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

class QLayout;
class QWidget;

// Words for what a widget or a layout is, so that a table can say what it should be.

// Where the widget lies in the layout that holds it: "verticalLayout[2]" for the third item of a box,
// "gridLayout row 1 column 2" or "row 1 columns 1-2" in a grid, "stackedWidget[0]" for a page, or
// "in NAME" for a child that no layout holds.
QString placeOf(const QWidget &widget);

// The properties that differ from those of a new widget of the same class, in a fixed order:
// "text=...; minimum=0x45; ...".
QString settingsOf(const QWidget &widget);

// The names of all other properties that differ from those of a new widget, in the class's order;
// without those that come from the place in the window or are handed down.
QStringList otherSettingsOf(const QWidget &widget);

// "on WIDGET" or "in LAYOUT[1]", spacing and margins ("default" where they are those of a new layout of
// the class), and the spacers: "on frame; spacing 0; margins 10,0,0,0; spacer [2] 40x20 Expanding/Minimum".
QString layoutDescription(const QLayout &layout);
