// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/bytesource.h"
#include "helpers/self-extractor/base/memory.h"

#include "7zTypes.h"

namespace sfx {

/// A part of a ByteSource in the form that 7-Zip's header parser reads from. Positions count from
/// the start of the part.
class LookStream
{
public:
    LookStream(ByteSource &source, std::uint64_t offset, std::uint64_t size);
    LookStream(const LookStream &) = delete;
    LookStream &operator=(const LookStream &) = delete;

    /// Gets the buffer; false: no memory.
    [[nodiscard]] bool allocate();
    /// Valid as long as this object.
    ILookInStreamPtr interface() const { return &m_entry.functions; }

    /// The stream behind an interface pointer, and where its position 0 lies in the source.
    static LookStream &of(ILookInStreamPtr stream);
    ByteSource &source() const { return m_source; }
    std::uint64_t offset() const { return m_offset; }

private:
    struct Entry
    {
        ILookInStream functions; // first: 7-Zip hands back a pointer to it
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
