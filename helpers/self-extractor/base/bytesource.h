// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>

namespace sfx {

// Random access to the bytes of the executable. Readers do not own it.
class ByteSource
{
public:
    // Fills `data` with the `size` bytes from `offset` on. Returns false if the file has fewer
    // bytes or the system cannot read them. Several threads may call it at the same time.
    [[nodiscard]] virtual bool readAt(std::uint64_t offset, void *data, std::size_t size) = 0;
    // Length of the file in bytes.
    virtual std::uint64_t size() const = 0;

protected:
    ~ByteSource() = default;
};

} // namespace sfx
