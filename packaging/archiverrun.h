// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "packaging/packagingjob.h"
#include "platform/joblog.h"

class HelperProcess;

// Compresses the source folder of `job` into job.archivePath: provides the archiver in the temporary
// directory, runs it as `process` (not yet started, working directory set) and passes its percentages
// and its output on. Blocks until the archiver has ended or has been silent for 30 seconds.
// False after a failure, which has then been logged.
bool createArchive(const PackagingJob &job, HelperProcess &process, const JobReport &report);
