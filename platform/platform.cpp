// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/platform.h"

#include <atomic>

namespace {

std::atomic<Platform *> replacementPlatform = nullptr;

} // namespace

Platform &platform()
{
    static const std::unique_ptr<Platform> native = makeNativePlatform();
    Platform *const replacement = replacementPlatform;
    return replacement ? *replacement : *native;
}

void setPlatform(Platform *replacement)
{
    replacementPlatform = replacement;
}
