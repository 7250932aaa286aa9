// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/platform.h"

#include "platform/nativeplatform.h"

#include <atomic>

namespace {

std::atomic<Platform *> replacementPlatform = nullptr;

} // namespace

Platform &platform()
{
    static NativePlatform native;
    Platform *const replacement = replacementPlatform;
    return replacement ? *replacement : native;
}

void setPlatform(Platform *replacement)
{
    replacementPlatform = replacement;
}
