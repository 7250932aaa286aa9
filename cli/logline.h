// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// The kinds of lines in the job log, for the user at the terminal.
enum class LogLineKind { Information, Warning, Error };

// The stages of the engine's job.
enum class JobStage { Unchanged, Archive, Assembly, Icon };

// Returns the kind of a line. The engine may have written it in English or in Chinese.
LogLineKind kindOfLogLine(const QString &line);

// Returns the stage that begins with this line.
JobStage stageBegunBy(const QString &line);

// Returns what a terminal would show of a piece of the archiver's output at its end, without lines
// of progress. The archiver erases them with backspaces, which only a terminal understands. Other
// lines of the log do not change. The result may be empty.
QString withoutProgress(const QString &text);
