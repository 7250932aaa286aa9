// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// The two output streams of a console program.
enum class Stream { Output, Error };

// Whether a person watches `stream` (it is not a file or a pipe).
bool isTerminal(Stream stream);

// Writes `text` at once, in the terminal's encoding. A stream whose reader has gone away takes it
// silently.
void writeText(Stream stream, const QString &text);

// To be called once, before anything is opened or written.
void prepareTerminal();
