// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "packaging/packagingjob.h"

#include <QStringList>

// Returns the archiver's nine arguments for `job`. They add everything inside the source folder,
// but not the folder itself, to a 7z archive, with progress on standard output. The two paths are
// in the platform's native form.
QStringList archiverArguments(const PackagingJob &job);
