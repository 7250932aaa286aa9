// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// Documents for a Unix system, made from the table of the options. The build writes them into its
// folder docs/.

// The manual page, for the program man.
QString manualPage();

// The completions of the command line.
QString bashCompletion();
QString zshCompletion();
