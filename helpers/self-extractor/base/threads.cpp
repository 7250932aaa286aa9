// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/base/thread.h"

namespace sfx {

void runOnThreads(Thread *others, unsigned count, void (*work)(void *), void *argument)
{
    for (unsigned i = 0; i < count && others[i].start(work, argument); ++i) {
    }
    work(argument);
    for (unsigned i = 0; i < count; ++i) {
        others[i].join();
    }
}

} // namespace sfx
