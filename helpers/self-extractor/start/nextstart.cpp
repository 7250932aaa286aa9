// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/nextstart.h"

namespace sfx {

namespace {

// Microsoft, "System Error Codes".
constexpr unsigned long elevationRequired = 740; // the program's manifest asks for more rights
constexpr unsigned long cancelled = 1223;        // the user has not allowed them

} // namespace

NextStart nextStart(unsigned long systemError, bool isElevated)
{
    if (systemError != elevationRequired) {
        return NextStart::None;
    }
    return isElevated ? NextStart::ThroughShell : NextStart::ProducedFile;
}

ExitCode exitCodeOfStart(unsigned long systemError)
{
    return systemError == cancelled ? ExitCode::Cancelled : ExitCode::StartFailed;
}

} // namespace sfx
