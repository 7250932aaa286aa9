// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/inputcheck.h"
#include "cli/packoptions.h"
#include "packaging/packagingjob.h"

#include <variant>

// A job that can start.
struct PreparedJob
{
    PackOptions options;
    // The job's paths are absolute. Its archivePath is still empty, and its outputDir is the folder
    // of the product; TerminalJob replaces both.
    PackagingJob job;
    QString product; // the absolute path of the executable

    // The file name that the engine gives the executable. It may differ from the product's.
    QString madeName() const;
};

// Checks the request against the disk, and prepares what the engine needs beyond its own helpers.
// Call it after PrivateDirectory::enter(): what it writes belongs into the temporary directory.
// Creates the output directory if it is missing; changes nothing else elsewhere.
std::variant<PreparedJob, Refusal> prepareJob(const PackOptions &options);
