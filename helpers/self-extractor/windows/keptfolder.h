// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/archive/archive.h"
#include "helpers/self-extractor/start/startplan.h"
#include "helpers/self-extractor/windows/progresswindow.h"

namespace sfx {

// The folder in the user's profile that an application is unpacked into once and stays in. While
// this object exists, the folder is in use, and nobody removes it.
class KeptFolder
{
public:
    KeptFolder() = default;
    KeptFolder(const KeptFolder &) = delete;
    KeptFolder &operator=(const KeptFolder &) = delete;
    // Records the last use.
    virtual ~KeptFolder() = default;

    // The application's folder without a separator at its end, as programs know it.
    virtual const Text &application() const = 0;
    // Removes other kept folders that are too old or belong to an older version. Takes at most half a
    // second.
    virtual void clearOthers() const = 0;
};

// If the plan asks for it, makes the kept folder of this archive if it does not exist, and puts right
// what differs in it. Waits while another start does so. The window may be missing. If `folder` is
// empty after Ok, the application is to be unpacked into a private folder.
//
// Only the full module keeps folders: there, keptfolder.cpp is linked, and in the small one
// keptfolder_none.cpp.
Status openKeptFolder(const StartPlan &plan, Archive &archive, const Owned<ProgressWindow> &window,
                      Owned<KeptFolder> &folder);

} // namespace sfx
