// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

// The module with this text as its resource SETTINGS, and as a program for the console if wished.
// Empty on failure.
QByteArray preparedModule(const QByteArray &module, const QByteArray &settings,
                          bool forConsole = false);
