// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>

// Returns the same image as QPixmap::fromImage(image).toImage(): premultiplied if a pixel, or any
// entry of the colour table, is translucent; otherwise without an alpha channel. A QPixmap itself
// needs a GUI application, which the terminal program does not have.
QImage imageOfPixmap(const QImage &image);
