// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QImage>
#include <QString>
#include <QStringList>

// The colours of one style sheet's images.
struct Palette
{
    QColor accent;
    QColor field;   // inside of an empty indicator
    QColor outline; // around an empty indicator
    QColor mark;    // tick, bar or dot on the accent
    QColor disabledField;
    QColor disabledOutline;
    QColor disabledMark;
    QColor arrow; // arrows and tree branches
};

Palette defaultPalette();
Palette darkPalette();

// The names of all images of a style sheet, without ".png".
QStringList widgetImageNames();

// Draws the image called `name`. It has twice the pixels of the size it is shown at, so that it
// is sharp on a screen scaled to 200 %. An unknown name gives a null image.
QImage drawWidgetImage(const QString &name, const Palette &palette);
