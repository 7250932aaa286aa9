// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/failure.h"

#include <algorithm>

namespace fast {

Failure failureOf(const pe::NativePath &path, const pe::Error &error)
{
    const bool isWriting = error.kind == pe::ErrorKind::CannotWrite;
    std::string line = pe::utf8Of(path) + ": " + error.what;
    if (!error.system.empty()) {
        line += " - " + error.system;
    }
    std::replace_if(
        line.begin(), line.end(), [](char letter) { return letter >= 0 && letter < ' '; }, '?');
    return {isWriting ? ExitStatus::Failed : ExitStatus::Unreadable, line};
}

} // namespace fast
