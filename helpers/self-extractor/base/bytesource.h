// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>

namespace sfx {

/// Random access to the bytes of the executable. Not owned by those who read through it.
class ByteSource
{
public:
    /// Fills `data` with the `size` bytes from `offset`. False: the range is not all there, or the
    /// system could not read it. Several threads may call it at a time.
    [[nodiscard]] virtual bool readAt(std::uint64_t offset, void *data, std::size_t size) = 0;
    /// Length of the file in bytes.
    virtual std::uint64_t size() const = 0;

protected:
    ~ByteSource() = default;
};

} // namespace sfx
