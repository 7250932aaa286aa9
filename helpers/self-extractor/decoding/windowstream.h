// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/decoding/stream.h"

namespace sfx {

// A decoder that writes into a circular window and hands out what it has written there. Bytes stay
// valid for many calls of next(), so another thread may read them.
class WindowStream : public Stream
{
public:
    // The largest limit with which next() leaves the `unread` bytes that were handed out last as
    // they are. 0: with no limit. It is never 0 if `unread` is 0.
    //
    // While some bytes are unread, next() goes back to the beginning of the window at most once.
    virtual std::size_t freeSpace(std::size_t unread) const = 0;
};

} // namespace sfx
