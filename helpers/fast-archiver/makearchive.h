// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/fast-archiver/arguments.h"
#include "helpers/fast-archiver/progress.h"

#include <cstddef>

namespace fast {

// What was packed.
struct Summary
{
    std::size_t folders = 0;
    std::size_t files = 0;
    std::uint64_t bytes = 0;       // of all files
    std::uint64_t archiveSize = 0; // in bytes
};

// Makes the archive. If it fails, it leaves no archive. Other threads can follow `progress`, and
// stop it.
Outcome<Summary> makeArchive(const Request &request, Progress &progress);

} // namespace fast
