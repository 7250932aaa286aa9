// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>

namespace sfx {

// What is known about a file or folder that is to be removed.
enum class EntryUse : std::uint8_t {
    Free,
    InUse,    // by another process, or it cannot be told
    Gone,     // or about to be gone
    NotForUs, // its access list keeps us from removing it, or it is not of the kind we expect
};

// What the system's answer (an NTSTATUS) says when the entry is opened for removal.
EntryUse useByOpening(std::uint32_t status);

// Whether a file is a program or library by its name. If a program runs in a folder, one of these
// files is in use.
bool isProgramName(const char16_t *name, std::size_t size);

} // namespace sfx
