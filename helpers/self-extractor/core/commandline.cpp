// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/core/commandline.h"

namespace sfx {

const char16_t *argumentTail(const char16_t *commandLine)
{
    bool quoted = false;
    for (; *commandLine != 0; ++commandLine) {
        if (*commandLine == u'"') {
            quoted = !quoted;
        } else if (!quoted && (*commandLine == u' ' || *commandLine == u'\t')) {
            break;
        }
    }
    return commandLine;
}

} // namespace sfx
