// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/status.h"
#include "helpers/self-extractor/start/kepttable.h"
#include "helpers/self-extractor/windows/progresswindow.h"

namespace sfx {

// How a folder is compared with an archive.
struct KeptComparison
{
    bool comparesContents = false;
    bool removesWrong = false; // entries that must be replaced; links, and never their targets
};

// Compares the application's folder in a kept one, which is open, with the archive, and marks the
// entries of the table that are right. Only entries that the archive has are looked at, and no link
// is followed. The window may be missing. WriteFailed: something cannot be opened or removed.
Status checkKept(HANDLE application, KeptTable &table, const KeptComparison &how,
                 const Owned<ProgressWindow> &window);

} // namespace sfx
