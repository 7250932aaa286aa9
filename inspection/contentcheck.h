// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "inspection/producedfile.h"

#include <QByteArray>
#include <QHash>

// The SHA-256 of files, by their path in the archive.
using FileHashes = QHash<QString, QByteArray>;

// Decodes every byte of the archive and compares all checksums, on all processors. Writes nothing.
// `file` must have been checked. Fills in `hashes` unless it is null. Returns nothing if all is
// well.
std::optional<Finding> checkContent(ProducedFile &file, FileHashes *hashes = nullptr);
