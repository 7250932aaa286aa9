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

// Compares the request with the disk before anything is started, so that a mistake costs no time and
// leaves nothing behind. Makes the output directory when it is missing; changes nothing else.
//
// The job's paths are absolute; its archivePath is still empty.
std::variant<PackagingJob, Refusal> checkInputs(const CommandLine &line);
