// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>

// The image that a QPixmap made of `image` holds: premultiplied where something is translucent, or a colour
// table has a translucent entry, used or not; else without an alpha channel. A pixmap itself needs a GUI
// application, which the terminal program has not.
QImage imageOfPixmap(const QImage &image);
