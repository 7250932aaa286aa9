// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/inputcheck.h"
#include "cli/packoptions.h"

#include <QString>

#include <variant>

// The resource with the self-extractor module for such a product. Only kestrelpack-cli itself carries the
// full one, which a fast start and --keep need; a builder who brought the bundle's module may have left
// it out.
std::variant<QString, Refusal> moduleFor(const PackOptions &options);
