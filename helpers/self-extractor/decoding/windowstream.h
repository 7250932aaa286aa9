// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/decoding/stream.h"

namespace sfx {

/// A decoder that writes into a window, round and round, and hands out what it has written there.
///
/// What next() has handed out stays as it is until so many bytes were handed out from its beginning
/// on as the window holds, and may be read meanwhile by another thread. Its place in the window is
/// the number of bytes that were handed out before it, modulo the size of the window.
class WindowStream : public Stream
{
public:
    const std::uint8_t *window() const { return m_window.data(); }
    std::size_t windowSize() const { return m_window.size(); }

protected:
    Array<std::uint8_t> m_window;
};

} // namespace sfx
