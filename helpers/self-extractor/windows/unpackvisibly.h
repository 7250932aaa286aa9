// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/unpacking/unpacksink.h"
#include "helpers/self-extractor/windows/progresswindow.h"

namespace sfx {

// Unpacks an archive with as many threads as the machine has processors. The window shows the
// progress; it may be missing. `totalBytes` and `skipped`: see unpack().
Status unpackVisibly(Archive &archive, UnpackSink &sink, std::uint64_t totalBytes,
                     const Owned<ProgressWindow> &window, const bool *skipped = nullptr);

} // namespace sfx
