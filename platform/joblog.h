// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QCoreApplication>
#include <QString>

#include <functional>

// How the stages of a job report to its log. All of this is called on the thread that runs the job.

// Takes one line of the job log.
using LogSink = std::function<void(const QString &message)>;

// Where a stage reports to.
struct JobReport
{
    LogSink log;
    std::function<void(int percentage)> progress; // 0 to 100, not necessarily rising
};

// WorkerText::tr() translates a text of the job log under the context "Worker", for the functions that
// log on the worker's behalf.
struct WorkerText
{
    Q_DECLARE_TR_FUNCTIONS(Worker)
};
