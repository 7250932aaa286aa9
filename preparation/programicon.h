// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

// The icon that Explorer shows for the program, as an .ico file with all its images in their
// original form. Empty if the program has no icon, or none that can be read completely; then the
// engine takes the icon in its own way.
QByteArray iconFileOfProgram(const QString &path);
