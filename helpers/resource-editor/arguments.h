// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/nativepath.h"

#include <optional>
#include <string>
#include <vector>

// What one run of the resource editor must do.
struct Request
{
    enum class Action {
        DeleteIconGroups,
        SetIconGroup,
    };

    Action action = Action::DeleteIconGroups;
    pe::NativePath open;
    pe::NativePath save;
    pe::NativePath icon;      // SetIconGroup: the ICO file
    std::u16string groupName; // SetIconGroup: in capitals
    pe::NativePath log;       // empty: no log is wanted
};

// The arguments without the program's name, each as the system gave it.
using Arguments = std::vector<pe::NativePath>;

// Reads one of the two command lines that the editor knows:
//   -open FILE -save FILE -action delete -mask ICONGROUP, -log LOG
//   -open FILE -save FILE -action addoverwrite -resource ICO -mask ICONGROUP,NAME, -log LOG
// NAME begins with a letter and consists of letters, digits and "_". The value NUL for LOG means no log.
// For any other arguments it returns nothing and sets `problem`.
std::optional<Request> parseArguments(const Arguments &arguments, std::string &problem);
