// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "inspection/contentcheck.h"
#include "inspection/programfacts.h"

#include <QJsonObject>

// Everything that is known about a checked file: cli/README.md describes the keys. Entries get a
// SHA-256 if there are `hashes`.
QJsonObject reportOf(ProducedFile &file, const ProgramFacts &facts,
                     const FileHashes &hashes = FileHashes());

// The same for people: some lines, then one line for each entry.
QString textOf(const QJsonObject &report);
