// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "preparation/sourceentry.h"

#include <functional>

// Lists everything in `folder`, an absolute path. Links are not entered. Checks for each file whether
// this process may read it, without reading it. `isStopped` is asked before each folder; if it
// returns true, the listing has an error.
SourceListing listFolder(
    const QString &folder, const std::function<bool()> &isStopped = [] { return false; });
