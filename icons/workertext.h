// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QCoreApplication>

// WorkerText::tr() translates a text of the job log under the context "Worker", for the functions that
// log on the worker's behalf.
struct WorkerText
{
    Q_DECLARE_TR_FUNCTIONS(Worker)
};
