// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/failure.h"

namespace sfx {

ExitCode exitCodeOf(Status status)
{
    switch (status) {
    case Status::ReadFailed:
        return ExitCode::ReadFailed;
    case Status::Unsupported:
        return ExitCode::Unsupported;
    case Status::UnsafeName:
        return ExitCode::UnsafeName;
    case Status::NoMemory:
        return ExitCode::NoMemory;
    case Status::WriteFailed:
        return ExitCode::WriteFailed;
    case Status::DiskFull:
        return ExitCode::DiskFull;
    case Status::Interrupted:
        return ExitCode::Interrupted;
    case Status::ProgramMissing:
        return ExitCode::ProgramMissing;
    case Status::Cancelled:
        return ExitCode::Cancelled;
    case Status::Ok:
    case Status::Damaged:
        break;
    }
    return ExitCode::Damaged;
}

} // namespace sfx
