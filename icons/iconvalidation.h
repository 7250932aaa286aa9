// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/joblog.h"

#include <QByteArray>

// Returns true if `data` is a Windows icon file (ICO: reserved word 0, type word 1) that Qt's ICO
// reader can decode. Logs exactly one line: the size of the first image from the reader, or the
// reason for false.
bool isUsableIcon(const QByteArray &data, const LogSink &log);
