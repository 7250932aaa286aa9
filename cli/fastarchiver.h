// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/inputcheck.h"

#include <optional>

// Puts the archiver for fast starts into the job's private directory, with the name of the usual
// one: the engine uses an archiver that is there already. Only kestrelpack-cli itself carries it,
// as a resource beside the bundle.
std::optional<Refusal> provideFastArchiver(const QString &directory);
