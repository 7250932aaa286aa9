// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

// A sanitizer makes everything slower and uses additional memory.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool underSanitizer = true;
#elif defined(__has_feature)
constexpr bool underSanitizer = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
constexpr bool underSanitizer = false;
#endif
