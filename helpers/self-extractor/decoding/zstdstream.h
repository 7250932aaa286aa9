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
    // The stream takes the memory of its window from `spareWindow`, if that is large enough, and
    // leaves it there when it is destroyed.
    ZstdStream(Owned<Stream> input, std::uint64_t unpackSize,
               Array<std::uint8_t> *spareWindow = nullptr);
    ~ZstdStream() override;

    // `window`: by zstdWindowSize(). A frame that needs more is refused (Unsupported). Call it once,
    // before next().
    Status open(std::uint64_t window);
    // At the end it checks that the packed data end there, too, with a whole frame.
    Status next(std::size_t limit, ByteView &bytes) override;
    std::size_t freeSpace(std::size_t unread) const override;

private:
    // The decoder's window, with a maximum. The decoder never has two at a time.
    struct WindowMemory
    {
        bool allocate(std::size_t size);

        ISzAlloc functions = {}; // must be first: 7-Zip passes a pointer to it
        std::size_t most = 0;
        bool isExceeded = false;
        Array<std::uint8_t> bytes; // may be larger than asked for, and stays when it is released
    };

    static void *allocateWindow(ISzAllocPtr memory, std::size_t size);
    static void keepWindow(ISzAllocPtr memory, void *window);
    Status statusOf(SRes result) const;
    Status refill();
    Status decodeBlock();
    Status checkEnd();

    Owned<Stream> m_input;
    std::uint64_t m_unpackSize;
    std::uint64_t m_left;           // bytes that are still to be handed out
    std::size_t m_pending = 0;      // of these, bytes that are decoded
    bool m_isBetweenFrames = false; // a frame has just ended
    Array<std::uint8_t> *m_spareWindow;
    WindowMemory m_window;
    CZstdDecHandle m_decoder = nullptr;
    CZstdDecState m_state = {};
};

} // namespace sfx
