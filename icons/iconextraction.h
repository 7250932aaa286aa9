// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/joblog.h"

#include <QByteArray>
#include <QImage>

// Returns the first icon of the program at `executable` as the bytes of an ICO file with one image,
// at least 256 pixels on its longer side. Returns nothing if there is no icon or it cannot be
// converted. Logs one line: the reason, or the number of bytes.
QByteArray iconOfExecutable(const QString &executable, const LogSink &log);

// Returns `image` unchanged if both sides have 256 pixels or more. Otherwise scales it smoothly to
// fit 256 x 256, and keeps its aspect ratio (the short side is rounded down).
QImage enlargedToIconSize(const QImage &image);
