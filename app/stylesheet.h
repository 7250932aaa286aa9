// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

class QApplication;

// Loads the style sheet from the resource bundle into the application. Returns false if it is
// missing, unreadable or empty. Then the reason is in Qt's message log, and the application keeps
// Qt's look.
bool loadStyleSheet(QApplication &application);

// Shows a warning in a message box without a parent window. Returns when the user has closed it.
void warnOfMissingStyleSheet();
