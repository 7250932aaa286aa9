// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

class QApplication;

// Gives the application the style sheet of the bundle. False when there is none that can be used;
// the reason is then in Qt's message log, and the application keeps Qt's own look.
bool loadStyleSheet(QApplication &application);

// Tells the person, in a box that stands alone, and returns when it is closed.
void warnOfMissingStyleSheet();
