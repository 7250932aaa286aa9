// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/archive/lookstream.h"

namespace sfx {

namespace {

constexpr std::size_t bufferSize = 16 * 1024;

} // namespace

LookStream::LookStream(ByteSource &source, std::uint64_t offset, std::uint64_t size)
    : m_entry{{look, skip, read, seek}, this}
    , m_source(source)
    , m_offset(offset)
    , m_size(size)
{
}

bool LookStream::allocate()
{
    return m_buffer.allocate(bufferSize);
}

LookStream &LookStream::of(ILookInStreamPtr stream)
{
    return *reinterpret_cast<const Entry *>(stream)->owner;
}

SRes LookStream::look(ILookInStreamPtr self, const void **data, size_t *size)
{
    LookStream &stream = of(self);
    if (*size > stream.m_buffer.size()) {
        *size = stream.m_buffer.size();
    }
    const std::uint64_t position = stream.m_position;
    *data = stream.m_buffer.data();
    const SRes result = read(self, stream.m_buffer.data(), size);
    stream.m_position = position;
    return result;
}

SRes LookStream::skip(ILookInStreamPtr self, size_t size)
{
    of(self).m_position += size;
    return SZ_OK;
}

SRes LookStream::read(ILookInStreamPtr self, void *data, size_t *size)
{
    LookStream &stream = of(self);
    const std::uint64_t left = stream.m_position < stream.m_size ? stream.m_size - stream.m_position
                                                                 : 0;
    if (*size > left) {
        *size = static_cast<size_t>(left);
    }
    if (*size != 0 && !stream.m_source.readAt(stream.m_offset + stream.m_position, data, *size)) {
        *size = 0;
        return SZ_ERROR_READ;
    }
    stream.m_position += *size;
    return SZ_OK;
}

SRes LookStream::seek(ILookInStreamPtr self, Int64 *position, ESzSeek origin)
{
    LookStream &stream = of(self);
    std::uint64_t base = 0;
    if (origin == SZ_SEEK_CUR) {
        base = stream.m_position;
    } else if (origin == SZ_SEEK_END) {
        base = stream.m_size;
    }
    stream.m_position = base + static_cast<std::uint64_t>(*position);
    *position = static_cast<Int64>(stream.m_position);
    return SZ_OK;
}

} // namespace sfx
