// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "packaging/packagingjob.h"
#include "platform/joblog.h"

class HelperProcess;

// Compresses the source folder of `job` into job.archivePath: copies the archiver to the temporary
// directory, runs it as `process` (not yet started, working directory set), and reports its
// percentages and its output. Blocks until the archiver has ended or has been silent for 30
// seconds. Returns false after a failure; the failure is in the log.
bool createArchive(const PackagingJob &job, HelperProcess &process, const JobReport &report);
