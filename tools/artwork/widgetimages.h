// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QImage>
#include <QString>
#include <QStringList>

// The colours of the images for one style sheet.
struct Palette
{
    QColor accent;
    QColor field;   // the inside of an empty indicator
    QColor outline; // the line around an empty indicator
    QColor mark;    // tick, bar or dot on the accent
    QColor disabledField;
    QColor disabledOutline;
    QColor disabledMark;
    QColor arrow; // arrows and tree branches
};

Palette defaultPalette();
Palette darkPalette();

// Returns the names of all images of a style sheet, without ".png".
QStringList widgetImageNames();

// Draws the image `name`. It has twice the pixels of the size at which it is shown, so that it is
// sharp on a screen scaled to 200 %. Returns a null image if the name is unknown.
QImage drawWidgetImage(const QString &name, const Palette &palette);
