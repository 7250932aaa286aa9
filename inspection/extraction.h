// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "inspection/producedfile.h"

// Unpacks the archive of a checked file into the new folder `folder`; an empty one may exist. The
// folder appears when everything is in it and every checksum has been compared. Until then the
// files are in a private folder beside it, so nothing is ever overwritten, and after a failure
// nothing is left. Files get their times and the read-only attribute; hidden and system files
// become ordinary ones. Returns nothing if all is well.
std::optional<Finding> extractInto(ProducedFile &file, const QString &folder);

// Returns why extractInto() cannot create `folder`, or an empty text.
QString reasonNotToExtract(const QString &folder);
