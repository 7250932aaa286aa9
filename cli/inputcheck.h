// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/commandline.h"
#include "packaging/packagingjob.h"

#include <variant>

// A reason for not starting the job, as one English sentence.
struct Refusal
{
    QString message;
};

// Checks the request against the disk before anything is started, so that a mistake costs no time
// and leaves no files. Creates the output directory if it is missing; changes nothing else.
//
// The job's paths are absolute. Its archivePath is still empty.
std::variant<PackagingJob, Refusal> checkInputs(const CommandLine &line);
