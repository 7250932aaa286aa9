// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "packaging/packagingjob.h"
#include "platform/joblog.h"

// Writes the output executable of `job`: self-extractor module, configuration block and archive, in
// this order. Overwrites an existing file. Reads the archive in chunks. Progress goes from 50 to
// 100.
//
// Returns false after a failure; the failure is in the log, and the incomplete output file stays.
// The results of the writes are not checked: a short write shows only in the logged total and in
// the file's size.
bool assembleOutput(const PackagingJob &job, const JobReport &report);
