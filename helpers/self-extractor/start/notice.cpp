// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/notice.h"

namespace sfx {

Notice noticeOf(ExitCode failure, const NoticeFacts &facts)
{
    if (facts.hasStandardError) {
        return Notice::Line;
    }
    const bool isUsersWish = failure == ExitCode::Cancelled || failure == ExitCode::Interrupted;
    return facts.isSilent || facts.isForConsole || isUsersWish ? Notice::None : Notice::Box;
}

} // namespace sfx
