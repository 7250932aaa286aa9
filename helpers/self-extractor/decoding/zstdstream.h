// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/decoding/windowstream.h"

#include "7zTypes.h"

#include "ZstdDec.h"

namespace sfx {

// Decodes Zstandard: one frame or several, and skippable frames before each of them. The check sum
// of a frame is compared if it has one. Frames that need a dictionary are refused.
//
// If all data fit into the window, they stay there, and no frame needs a window of its own.
// Otherwise 7-Zip's decoder allocates a window for each frame that needs a larger one.
class ZstdStream final : public WindowStream
{
public:
    ZstdStream(Owned<Stream> input, std::uint64_t unpackSize);
    ~ZstdStream() override;

    // `window`: by zstdWindowSize(). A frame that needs more is refused (Unsupported). Call it once,
    // before next().
    Status open(std::uint64_t window);
    // At the end it checks that the packed data end there, too, with a whole frame.
    Status next(std::size_t limit, ByteView &bytes) override;
    std::size_t freeSpace(std::size_t unread) const override;

private:
    // The heap for the decoder's window, with a maximum.
    struct WindowMemory
    {
        ISzAlloc functions = {}; // must be first: 7-Zip passes a pointer to it
        std::size_t most = 0;
        bool isExceeded = false;
    };

    static void *allocateWindow(ISzAllocPtr memory, std::size_t size);
    Status statusOf(SRes result) const;
    Status refill();
    Status decodeBlock();
    Status checkEnd();

    Owned<Stream> m_input;
    std::uint64_t m_unpackSize;
    std::uint64_t m_left;           // bytes that are still to be handed out
    std::size_t m_pending = 0;      // of these, bytes that are decoded
    bool m_isBetweenFrames = false; // a frame has just ended
    Array<std::uint8_t> m_window;   // empty if the decoder has its own
    WindowMemory m_memory;
    CZstdDecHandle m_decoder = nullptr;
    CZstdDecState m_state = {};
};

} // namespace sfx
