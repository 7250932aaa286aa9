// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <functional>

// Takes one line of the job log. Called on the thread that runs the job.
using LogSink = std::function<void(const QString &message)>;
