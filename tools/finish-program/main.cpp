// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// The step after linking a Windows program:  finish-program FILE
// It runs on the machine that builds, which is not Windows.

#include "tools/finish-program/finishing.h"

#include <cstdio>

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fputs("usage: finish-program FILE\n", stderr);
        return 2;
    }
    auto file = pe::File::open(argv[1], pe::File::Access::Edit);
    const auto finished = file.hasError() ? pe::Result<pe::Done>(file.error())
                                          : finishProgram(file.value());
    if (finished.hasError()) {
        std::fprintf(stderr, "finish-program: %s: %s %s\n", argv[1], finished.error().what.c_str(),
                     finished.error().system.c_str());
        return 1;
    }
    return 0;
}
