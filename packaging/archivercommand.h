// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "packaging/packagingjob.h"

#include <QStringList>

// The archiver's nine arguments for `job`: add everything inside the source folder, without a level
// for the folder itself, to a 7z archive, with progress on standard output. The two paths are in the
// platform's native form.
QStringList archiverArguments(const PackagingJob &job);
