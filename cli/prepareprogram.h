// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/preparejob.h"

#include <optional>

// Makes the produced file a program like the main program: of the same kind, with its identity and
// its whole icon, and with the settings that the request asks for. Writes the self-extractor module and
// the icon to the temporary directory, where the engine uses them: call it after
// PrivateDirectory::enter(). Sets the job's icon, and adds warnings and remarks. Refuses a main
// program that Windows would not start.
std::optional<Refusal> prepareProgram(PreparedJob &prepared);
