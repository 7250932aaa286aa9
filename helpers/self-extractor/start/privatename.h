// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/start/hexadecimal.h"

#include <cstdint>

namespace sfx {

// Number of bytes in a private folder's name.
constexpr std::size_t privateNameBytes = 10;

// What the name begins with, before its hexadecimal digits.
constexpr const char16_t *privatePrefix = u"kp-";
// The lock file has the folder's name with this suffix and lies beside the folder.
constexpr const char16_t *lockSuffix = u".lock";
// Matches the name of every lock file, and maybe others.
constexpr const char16_t *lockPattern = u"kp-*.lock";

// Sets `name` to the prefix and the bytes in hexadecimal digits. Returns false if there is not enough
// memory.
[[nodiscard]] bool makePrivateName(const unsigned char (&bytes)[privateNameBytes], Text &name);

// What the folder of a produced file is named after, as long as no other process uses that name.
struct ProducedFile
{
    const Text &path;       // full path
    std::uint64_t size;     // in bytes
    std::uint64_t modified; // in 100 ns since 1601
    const Text &rights;     // of describeRights(): an elevated start has a folder of its own
};

// Makes the bytes of a name that is the same for the same file. Upper and lower case of ASCII
// letters in the path do not matter. Anybody can compute these bytes, so the name is no secret.
void hashProducedFile(const ProducedFile &file, unsigned char (&bytes)[privateNameBytes]);

// Whether this is the name of a private folder's lock file.
inline bool isLockName(const char16_t *name)
{
    return isHexadecimalName(name, privatePrefix, 2 * privateNameBytes, lockSuffix);
}

} // namespace sfx
