// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/keptfolder.h"

namespace sfx {

Status openKeptFolder(const StartPlan &, Archive &, const Owned<ProgressWindow> &,
                      Owned<KeptFolder> &)
{
    return Status::Ok;
}

} // namespace sfx
