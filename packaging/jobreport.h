// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "icons/logsink.h"

#include <functional>

// Where a stage of the run reports to. Both are called on the thread that runs the job.
struct JobReport
{
    LogSink log;
    std::function<void(int percentage)> progress; // 0 to 100, not necessarily rising
};
