// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/decoding/stream.h"

namespace sfx {

// A decoder that writes into a circular window and hands out what it has written there.
//
// Bytes stay valid until a whole window more has been handed out; another thread may read them.
// Their position in the window is the number of bytes that were handed out before them, modulo the
// size of the window.
class WindowStream : public Stream
{
public:
    const std::uint8_t *window() const { return m_window.data(); }
    std::size_t windowSize() const { return m_window.size(); }

protected:
    Array<std::uint8_t> m_window;
};

} // namespace sfx
