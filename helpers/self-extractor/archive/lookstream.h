// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/bytesource.h"
#include "helpers/self-extractor/base/memory.h"

#include "7zTypes.h"

namespace sfx {

// A part of a ByteSource, as 7-Zip's header parser needs it. Positions are relative to the start of
// the part.
class LookStream
{
public:
    LookStream(ByteSource &source, std::uint64_t offset, std::uint64_t size);
    LookStream(const LookStream &) = delete;
    LookStream &operator=(const LookStream &) = delete;

    // Allocates the buffer. Returns false if there is not enough memory.
    [[nodiscard]] bool allocate();
    // Valid while this object exists.
    ILookInStreamPtr interface() const { return &m_entry.functions; }

    // The stream that an interface pointer belongs to.
    static LookStream &of(ILookInStreamPtr stream);
    ByteSource &source() const { return m_source; }
    // The offset of position 0 in the source.
    std::uint64_t offset() const { return m_offset; }

private:
    struct Entry
    {
        ILookInStream functions; // must be first: 7-Zip passes a pointer to it
        LookStream *owner;
    };

    static SRes look(ILookInStreamPtr self, const void **data, size_t *size);
    static SRes skip(ILookInStreamPtr self, size_t size);
    static SRes read(ILookInStreamPtr self, void *data, size_t *size);
    static SRes seek(ILookInStreamPtr self, Int64 *position, ESzSeek origin);

    Entry m_entry;
    ByteSource &m_source;
    std::uint64_t m_offset;
    std::uint64_t m_size;
    std::uint64_t m_position = 0;
    Array<std::uint8_t> m_buffer;
};

} // namespace sfx
