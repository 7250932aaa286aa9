// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/prepareprogram.h"
#include "cli/productcheck.h"
#include "cli/producticon.h"

#include <QString>

#include <functional>

// What a test program changes in the terminal program. kestrelpack-cli changes nothing.
struct ProgramHooks
{
    // Is called for a job's private temporary directory, before anything else is in it.
    std::function<void(const QString &directory)> fillTemporaryDirectory = [](const QString &) {
    };
    std::function<std::optional<Refusal>(PreparedJob &)> prepareProgram = &::prepareProgram;
    // Null: the product is only compared with its archive.
    ProductCheck checkProduct = canCheckProducts() ? &::checkProduct : ProductCheck();
    IconKeeper keepIcon = &keepProductIcon; // null: the icon is as the engine leaves it
};

// The whole terminal program. Returns its exit status (exitstatus.h).
int runTerminalProgram(int argc, char *argv[], const ProgramHooks &hooks = {});
