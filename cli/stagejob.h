// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/preparejob.h"

#include <functional>
#include <optional>

// Makes the folder that the archiver packs, if it cannot pack the user's own: something is left out,
// followed or changed. `places` are existing private folders for it, the best first; their owner
// removes them with everything in them. Changes the job's folder, and may add a remark. `isStopped` is
// asked again and again; if it returns true, the job ends with a refusal.
std::optional<Refusal> stageJob(PreparedJob &prepared, const QStringList &places,
                                const std::function<bool()> &isStopped);
