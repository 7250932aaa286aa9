// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// This is for programs built with MinGW-w64. When a thread ends, MinGW's threads library handles
// its keys in the order in which they were created. One key frees the memory of the thread_local
// variables; another key runs their destructors. The first variable creates the key for the memory
// first, so destructors would run on freed memory. Qt's regular expressions have such a variable. A
// worker thread that has used one would crash at its end while it holds a lock, and at its own end
// the program would wait for that lock for ever.
//
// Therefore we create the destructors' key before any other code runs.

#include <cxxabi.h>

namespace {

void nothing(void *) {}

[[gnu::constructor(101)]] void makeTheDestructorsKey()
{
    abi::__cxa_thread_atexit(nothing, nullptr, nullptr);
}

} // namespace
