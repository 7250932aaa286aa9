// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

// What one run of the resource editor is to do.
struct Request
{
    enum class Action {
        DeleteIconGroups,
        SetIconGroup,
    };

    Action action = Action::DeleteIconGroups;
    std::filesystem::path open;
    std::filesystem::path save;
    std::filesystem::path icon;               // SetIconGroup: the ICO file
    std::u16string groupName;                 // SetIconGroup: in capitals
    std::optional<std::filesystem::path> log; // nothing: no log is wanted
};

// Arguments without the program's name, each as the system gave it.
using Arguments = std::vector<std::filesystem::path>;

// Reads the two command lines that there are:
//   -open FILE -save FILE -action delete -mask ICONGROUP, -log LOG
//   -open FILE -save FILE -action addoverwrite -resource ICO -mask ICONGROUP,NAME, -log LOG
// Switches may come in any order and in small or capital letters; -log may be left out, and NUL as
// LOG means none. Nothing, and a reason in `problem`, when the arguments are others.
std::optional<Request> parseArguments(const Arguments &arguments, std::string &problem);
