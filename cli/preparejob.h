// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/inputcheck.h"
#include "cli/packoptions.h"
#include "packaging/packagingjob.h"
#include "preparation/sourcetree.h"

#include <functional>
#include <variant>

// A job that can start.
struct PreparedJob
{
    PackOptions options;
    // The job's paths are absolute. Its archivePath is still empty, and its outputDir is the folder
    // of the product; TerminalJob replaces both.
    PackagingJob job;
    QString product;      // the absolute path of the executable
    SourcePlan tree;      // what goes into the archive
    QStringList warnings; // sentences for the user
    QStringList remarks;  // the same, but nothing is wrong

    // The path of the file that the engine makes, from its output directory. It may differ from the
    // product's name.
    QString madeName() const;
};

// Checks the request against the disk: the folder with everything in it, the main program's name, and
// where the executable goes. The output directory may be missing. Changes nothing.
//
// `isStopped` is asked again and again; if it returns true, the job ends with a refusal.
std::variant<PreparedJob, Refusal> prepareJob(
    const PackOptions &options, const std::function<bool()> &isStopped = [] { return false; });
