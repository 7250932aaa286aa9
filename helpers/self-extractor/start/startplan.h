// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/start/blockreader.h"
#include "helpers/self-extractor/start/settings.h"

namespace sfx {

// What a produced file is to do: its settings, and its configuration block for what they leave open.
struct StartPlan
{
    Settings settings;
    ConfigBlock block;

    // Path of the main program in the archive, with `/`.
    const Text &program() const
    {
        return settings.program.isEmpty() ? block.runProgram : settings.program;
    }
    const Text &folderName() const
    {
        return settings.folderName.isEmpty() ? block.folderName : settings.folderName;
    }
    const Text &title() const { return settings.hasTitle ? settings.title : block.title; }
    bool isSilent() const { return settings.hasSilent ? settings.silent : block.silent; }
    // Whether a window may show the progress. A program for the console has none.
    bool showsProgress(bool isForConsole) const
    {
        return block.progress && !isSilent() && !isForConsole;
    }
};

// Reads both from a produced file. `archiveOffset` becomes the offset of the first byte after the
// block.
Status readStartPlan(ByteSource &source, StartPlan &plan, std::uint64_t &archiveOffset);

} // namespace sfx
