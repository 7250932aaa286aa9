// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "inspection/finding.h"

#include "helpers/self-extractor/exitcodes.h"

namespace {

Finding finding(const char *text, sfx::ExitCode code)
{
    return {QString::fromLatin1(text), static_cast<int>(static_cast<unsigned>(code) & 0xff)};
}

} // namespace

Finding findingOf(sfx::Status status)
{
    switch (status) {
    case sfx::Status::Unsupported:
        return finding("the archive needs something that the self-extractor does not have, for "
                       "example a link, encryption or another method",
                       sfx::ExitCode::Unsupported);
    case sfx::Status::UnsafeName:
        return finding("a file name is not allowed on Windows, or two names are the same there",
                       sfx::ExitCode::UnsafeName);
    case sfx::Status::NoMemory:
        return finding("there is not enough memory", sfx::ExitCode::NoMemory);
    case sfx::Status::ReadFailed:
        return finding("the file cannot be read", sfx::ExitCode::ReadFailed);
    case sfx::Status::WriteFailed:
        return finding("a file cannot be written", sfx::ExitCode::WriteFailed);
    case sfx::Status::DiskFull:
        return finding("the disk is full", sfx::ExitCode::DiskFull);
    case sfx::Status::ProgramMissing:
        return finding("the archive does not contain the program to run",
                       sfx::ExitCode::ProgramMissing);
    case sfx::Status::Ok:
    case sfx::Status::Damaged:
    case sfx::Status::Interrupted:
    case sfx::Status::Cancelled:
        break;
    }
    return finding("the file is damaged or incomplete, or is not a produced file",
                   sfx::ExitCode::Damaged);
}
