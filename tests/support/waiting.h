// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QTest>

// The time in milliseconds after which a test treats something as hung. The machine may stall for
// more than a minute, so no test result depends on this limit.
constexpr int patience = 300000;

// Qt's QTRY_ macros, with `patience` instead of five seconds.
#define WAIT_VERIFY(expression) QTRY_VERIFY_WITH_TIMEOUT(expression, patience)
#define WAIT_COMPARE(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, patience)
