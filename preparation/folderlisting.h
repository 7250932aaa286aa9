// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "preparation/sourceentry.h"

// Lists everything in `folder`, an absolute path. Links are not entered. Checks for each file whether
// this process may read it, without reading it.
SourceListing listFolder(const QString &folder);
