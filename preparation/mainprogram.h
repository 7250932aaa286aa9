// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/programheader.h"
#include "helpers/pe/versionresource.h"
#include "preparation/message.h"

#include <optional>
#include <variant>
#include <vector>

// What is read from the program that a produced file starts.
struct MainProgram
{
    pe::ProgramHeader header;
    std::vector<pe::VersionResource> identity;
    // The program has version information that cannot be read. The identity is empty then.
    bool hasDamagedIdentity = false;
    // Windows starts it with more rights than the user's other programs have.
    bool asksForRights = false;
};

// Reads the program. Returns a message if the file cannot be read, or if it is damaged so that
// Windows cannot load it.
std::variant<MainProgram, Message> readMainProgram(const QString &path);

// Whether Windows would start the program for the self-extractor, which is a 64-bit program (x64).
struct Startability
{
    bool canStart = false;
    // If it cannot start: why. Otherwise what the user should know, if anything; for example that
    // it starts on Windows on ARM only.
    std::optional<Message> remark;
};
Startability startabilityOf(const pe::ProgramHeader &header);

// The two kinds of programs that Windows starts.
enum class ProgramKind { Windows, Console };

// The kind of a program that can start.
ProgramKind kindOf(const pe::ProgramHeader &header);
