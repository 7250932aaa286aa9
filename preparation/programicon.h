// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "preparation/message.h"

#include <QByteArray>
#include <QString>

#include <optional>

// The icon that Explorer shows for the program, as an .ico file with all its images in their
// original form. Empty if the program has no icon, or none that can be read completely; then the
// engine takes the icon in its own way.
QByteArray iconFileOfProgram(const QString &path);

// Gives the program the icon of an .ico file with this content, with the name that the engine gives
// it. The program must have no icon of that name yet, or loses it. Returns a message if that fails;
// then the program keeps all its bytes.
std::optional<Message> setIconOfProgram(const QString &path, const QByteArray &icon);
