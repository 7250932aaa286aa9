// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>

// Makes an ICO file from square images of 1 to 256 pixels on each side, in the given order. An
// image of up to 96 pixels is stored as a 32-bit bitmap with an AND mask, which every Windows can
// read. A larger one is stored as PNG, as Windows Vista and later expect for the image of 256
// pixels.
QByteArray makeIcoFile(const QList<QImage> &images);
