// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QCoreApplication>
#include <QString>

#include <functional>

// How the stages of a job report progress and log lines. All of this is called on the job's thread.

// Takes one line of the job log.
using LogSink = std::function<void(const QString &message)>;

// The functions that a stage calls to report.
struct JobReport
{
    LogSink log;
    std::function<void(int percentage)> progress; // 0 to 100; may fall
};

// WorkerText::tr() translates a text of the job log in the context "Worker". It is for functions
// that log for the worker.
struct WorkerText
{
    Q_DECLARE_TR_FUNCTIONS(Worker)
};
