// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// The two output streams of a console program.
enum class Stream { Output, Error };

// Returns true if `stream` is a terminal, not a file or a pipe.
bool isTerminal(Stream stream);

// Writes `text` at once, in the terminal's encoding. If the stream's reader has ended, the text is
// lost and no error is reported.
void writeText(Stream stream, const QString &text);

// Prepares the standard streams. Call it once, before any file is opened and any text is written.
void prepareTerminal();
