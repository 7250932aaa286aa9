// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "packaging/packagingjob.h"
#include "platform/joblog.h"

// Writes the output executable of `job`: self-extractor module, configuration block and archive, one
// behind the other, over any file of that name. The archive is streamed; progress runs from 50 to 100.
//
// False after a failure, which has then been logged; the output file stays as far as it came. The
// results of the writes are not checked: a short write shows in the logged total and in the file's
// size.
bool assembleOutput(const PackagingJob &job, const JobReport &report);
