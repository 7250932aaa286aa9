// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>

namespace sfx {

// Largest window that is accepted, in bytes: the most that zstd's own program accepts unless it is
// asked for more.
constexpr std::uint64_t maxZstdWindow = 128ull << 20;

// A frame's header has at most this many bytes.
constexpr std::size_t zstdHeaderSize = 18;

// The window, in bytes, that Zstandard frames need if they unpack to `unpackSize` bytes together.
// `begin` has their first `size` bytes; zstdHeaderSize are enough. The window is never larger than
// the unpacked data. If the first frame does not contain all of them, or if it is not a frame with
// data, the result is maxZstdWindow at most: the frames after it may need that much. No limit is
// checked otherwise.
std::uint64_t zstdWindowSize(const std::uint8_t *begin, std::size_t size, std::uint64_t unpackSize);

} // namespace sfx
