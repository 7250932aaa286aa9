// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/joblog.h"

#include <QByteArray>

// Returns true if `data` is a Windows icon file (ICO: reserved word 0, type word 1) whose first
// image can be read (icons/iconimages.h). Logs exactly one line: the size of that image, or the
// reason for false.
bool isUsableIcon(const QByteArray &data, const LogSink &log);
