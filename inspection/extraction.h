// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "inspection/producedfile.h"

#include <functional>

// Unpacks the archive of a checked file into the new folder `folder`; an empty one may exist. The
// folder appears when everything is in it and every checksum has been compared. Until then the
// files are in a private folder beside it, so nothing is ever overwritten, and after a failure
// nothing is left. Files get their times and the read-only attribute; hidden and system files
// become ordinary ones. `isStopped` is asked before each piece that is written, on this thread; if
// it returns true, nothing is left, as after a failure. Returns nothing if all is well.
std::optional<Finding> extractInto(
    ProducedFile &file, const QString &folder,
    const std::function<bool()> &isStopped = [] { return false; });

// Why extractInto() cannot create a folder.
enum class ExtractionObstacle { None, NotAFolder, NotEmpty };
ExtractionObstacle obstacleAt(const QString &folder);
