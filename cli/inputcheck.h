// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/packoptions.h"

#include <optional>
#include <variant>

// A reason for not starting the job, as one sentence.
struct Refusal
{
    QString message;
};

// What the request means on this disk. The paths are absolute.
struct CheckedInputs
{
    QString folder;
    QString mainProgram; // relative to the folder, with "/"
    QString icon;        // empty: the user gave none
    QString product;     // the executable
};

// Checks that the folder can be packed, also whether the temporary directory is inside it. Nothing
// if all is well. Changes nothing.
std::optional<Refusal> checkFolder(const QString &folder);

// Checks the request against the disk before anything is started, so that a mistake costs no time
// and leaves no files. The output directory may be missing. Changes nothing.
std::variant<CheckedInputs, Refusal> checkInputs(const PackOptions &options);

// Creates the folder of the executable `product`, an absolute path, if it is missing. Refuses one
// that cannot be written to.
std::optional<Refusal> makeOutputDirectory(const QString &product);
