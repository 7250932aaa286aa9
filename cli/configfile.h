// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/options.h"

#include <QString>

#include <variant>

// Reads the configuration file `path`, an INI file without sections whose keys are the long names
// of options (cli/README.md describes it). Relative paths in it are relative to its folder; the
// returned ones begin with that folder. Returns a message if the file cannot be read, or if
// something in it is no option for packing.
std::variant<OptionValues, QString> readConfigFile(const QString &path);
