// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/status.h"

#include <QString>

// Why a file is not what it should be, in one English sentence without a full stop.
struct Finding
{
    QString text;
    int number = 0; // of the self-extractor's exit code: 201 to 212 (exitcodes.h)
};

// What `status` says about a produced file. Do not call it with Ok.
Finding findingOf(sfx::Status status);
