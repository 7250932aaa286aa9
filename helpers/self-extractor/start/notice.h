// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/exitcodes.h"

namespace sfx {

// How the user is told about a failure.
enum class Notice {
    None,
    Line, // on standard error
    Box   // a message box, if a user can see it
};

struct NoticeFacts
{
    bool hasStandardError = false;
    bool isSilent = false;     // the file shows no boxes
    bool isForConsole = false; // the file is a program for the console
};

// A line wins, so scripts never hang. A user who has cancelled needs no box.
Notice noticeOf(ExitCode failure, const NoticeFacts &facts);

} // namespace sfx
