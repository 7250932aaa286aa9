// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>

// Makes an ICO file of square images of 1 to 256 pixels a side, in the order given. Up to 96
// pixels an image is stored as a 32-bit bitmap with its AND mask, which every Windows reads;
// above, as PNG, as Windows Vista and later expect of the 256-pixel image.
QByteArray makeIcoFile(const QList<QImage> &images);
