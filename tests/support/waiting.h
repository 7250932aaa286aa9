// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QTest>

// How long a test waits before it takes something for hung, in milliseconds. A machine may stand still for more
// than a minute, so this is no limit that a test passes or fails by.
constexpr int patience = 300000;

// Qt's QTRY_ macros, with that patience in place of five seconds.
#define WAIT_VERIFY(expression) QTRY_VERIFY_WITH_TIMEOUT(expression, patience)
#define WAIT_COMPARE(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, patience)
