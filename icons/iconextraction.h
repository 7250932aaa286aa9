// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/joblog.h"

#include <QByteArray>
#include <QImage>

// The first icon of the program at `executable` as the bytes of an ICO file with one image, at least
// 256 pixels on its longer side. Empty when there is none or it cannot be converted; one line in the
// log tells which, or the number of bytes.
QByteArray iconOfExecutable(const QString &executable, const LogSink &log);

// `image` itself when both sides have 256 pixels or more, else scaled to fit 256 x 256 with its aspect
// kept (smoothly; the short side is rounded down).
QImage enlargedToIconSize(const QImage &image);
