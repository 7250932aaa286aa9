// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// The program's load configuration. The linker of binutils 2.40 does not write its address into the
// header; finish-program does, after linking.

#include "tools/finish-program/loadconfig.h"

// The linker option -u keeps it, although nothing refers to it.
extern "C" const LoadConfig kestrelpackLoadConfig;
const LoadConfig kestrelpackLoadConfig = {.timeStamp = unfinishedTimeStamp};
