// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/start/startplan.h"
#include "helpers/self-extractor/windows/keptpaths.h"
#include "helpers/self-extractor/windows/progresswindow.h"
#include "helpers/self-extractor/windows/usefile.h"

namespace sfx {

// What a start needs as long as its program runs.
struct KeptState
{
    KeptPaths paths;
    KeptRecord record;
    UseFile use;
    Handle guard; // of the kept folder: as long as it is open, nobody can replace the folder
};

// The folder in the user's profile that an application is unpacked into once and stays in. While
// this object exists, the folder is in use, and nobody removes it.
class KeptFolder
{
public:
    KeptFolder() = default;
    KeptFolder(const KeptFolder &) = delete;
    KeptFolder &operator=(const KeptFolder &) = delete;
    // Records the last use.
    ~KeptFolder();

    // Makes the folder of this archive if it does not exist, and puts right what differs in it. Waits
    // while another start does so. The window may be missing. If canGoOnPrivately() says so of the
    // status, the application can be unpacked into a private folder.
    Status open(const StartPlan &plan, Archive &archive, const Owned<ProgressWindow> &window);
    bool isOpen() const { return m_isOpen; }
    // The application's folder without a separator at its end, as programs know it.
    const Text &application() const { return m_state.paths.application; }
    // Removes other kept folders that are too old or belong to an older version. Takes at most half a
    // second.
    void clearOthers() const;

private:
    KeptState m_state;
    bool m_isOpen = false;
};

} // namespace sfx
