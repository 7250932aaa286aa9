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

bool joinArguments(const Text &first, const char16_t *own, Text &arguments)
{
    return (first.isEmpty() || (arguments.append(u" ") && arguments.append(first)))
        && arguments.append(argumentTail(own));
}

bool inheritCommandLine(const Text &path, const Text &name, const Text &first, const char16_t *own,
                        Text &commandLine)
{
    Text arguments;
    if (!joinArguments(first, own, arguments)) {
        return false;
    }
    for (const Text *program : {&path, &name}) {
        if (program->size() + 2 + arguments.size() <= maxCommandLine) {
            return commandLine.assign(u"\"", 1) && commandLine.append(*program)
                && commandLine.append(u"\"") && commandLine.append(arguments);
        }
    }
    return !first.isEmpty() || commandLine.assign(own, textLength(own));
}

} // namespace sfx
