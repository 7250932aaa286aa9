// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/commandline.h"

#include <initializer_list>

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

bool inheritCommandLine(const Text &path, const Text &name, const char16_t *own, Text &commandLine)
{
    const char16_t *tail = argumentTail(own);
    const std::size_t tailSize = textLength(tail);
    for (const Text *program : {&path, &name}) {
        if (program->size() + 2 + tailSize <= maxCommandLine) {
            return commandLine.assign(u"\"", 1) && commandLine.append(*program)
                && commandLine.append(u"\"") && commandLine.append(tail);
        }
    }
    return commandLine.assign(own, textLength(own));
}

} // namespace sfx
