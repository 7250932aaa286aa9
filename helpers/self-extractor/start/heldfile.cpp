// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/heldfile.h"

namespace sfx {

namespace {

// Microsoft, "System Error Codes".
constexpr unsigned long sharingViolation = 32;
constexpr unsigned long lockViolation = 33;

} // namespace

bool isHeldByAnother(unsigned long systemError)
{
    return systemError == sharingViolation || systemError == lockViolation;
}

} // namespace sfx
