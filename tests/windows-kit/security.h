// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

// This process' rights, and who may open a folder.
namespace kit {

enum class Elevation { None, Full, Limited }; // None: UAC is off, or the user is the system

inline constexpr const char *notByUac
    = "not started with \"Run as administrator\" by a user who has UAC";

bool isElevated();
Elevation elevationType();
std::string userSid(); // "S-1-5-21-..."
inline const std::string systemSid = "S-1-5-18";
inline const std::string administratorsSid = "S-1-5-32-544";

struct FolderSecurity
{
    unsigned long error = 0;
    std::string text;                  // in the security descriptor definition language
    std::string owner;                 // a SID
    std::vector<std::string> accounts; // the SIDs of all entries that allow something
    bool isProtected = false;          // inherits nothing from the folder above
    bool userMayWrite = false;         // by an entry for the user
    bool isLabelledHigh = false;
};

FolderSecurity securityOf(const std::wstring &folder);

} // namespace kit
