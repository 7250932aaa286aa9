// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// For programs that MinGW-w64 builds. Its thread_local variables lie in memory that a thread frees when it
// ends, through one key of its threads library; their destructors run through another, and the keys
// have their turn in the order in which they were made. A variable makes its memory's key first, so its
// destructor would run on memory that is free already. Qt's regular expressions have such a variable: a
// worker thread that has used one dies in its end with a lock held, for which the program then waits
// for ever when it ends.
//
// So the destructors' key is made before anything else runs.

#include <cxxabi.h>

namespace {

void nothing(void *) {}

[[gnu::constructor(101)]] void makeTheDestructorsKey()
{
    abi::__cxa_thread_atexit(nothing, nullptr, nullptr);
}

} // namespace
