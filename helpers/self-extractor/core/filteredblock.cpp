// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/core/filteredblock.h"

#include "helpers/self-extractor/core/methods.h"

#include <cstring>

namespace sfx {

namespace {

Status readExactly(Stream &stream, std::uint8_t *data, std::size_t size)
{
    std::size_t got = 0;
    const Status status = readFully(stream, data, size, got);
    return status == Status::Ok && got != size ? Status::Damaged : status;
}

} // namespace

FilteredBlock::FilteredBlock(Owned<Stream> block, std::uint64_t begin)
    : m_block(*block)
    , m_begin(begin)
    , m_filter(std::move(block))
{
}

Status FilteredBlock::open(Seam *seam)
{
    const Status status = m_filter.open(method::X86, nullptr, 0);
    return status == Status::Ok && seam != nullptr ? enter(*seam) : status;
}

Status FilteredBlock::enter(Seam &seam)
{
    std::uint8_t bytes[Seam::behind];
    const Status status = readExactly(m_block, bytes, sizeof bytes);
    if (status != Status::Ok) {
        return status;
    }
    const std::size_t fresh = Seam::findFreshStart(bytes);
    if (fresh == Seam::behind) {
        return enterBehind(seam, bytes);
    }
    std::uint8_t *out = seam.bytes() + Seam::before;
    std::memcpy(out, bytes, fresh);
    seam.setFreshStart(fresh);
    m_filter.startAt(m_begin + fresh, 0, bytes + fresh, Seam::behind - fresh);
    return readExactly(m_filter, out + fresh, Seam::behind - fresh);
}

// When the block before is done, it is as if there were no border.
Status FilteredBlock::enterBehind(Seam &seam, const std::uint8_t (&bytes)[Seam::behind])
{
    Seam::End end;
    if (!seam.waitForEnd(end)) {
        return Status::Cancelled;
    }
    std::uint8_t all[Seam::size];
    const std::size_t rest = Seam::before - end.filtered;
    std::memcpy(seam.bytes(), end.bytes, end.filtered);
    std::memcpy(all, end.bytes + end.filtered, rest);
    std::memcpy(all + rest, bytes, Seam::behind);
    m_filter.startAt(m_begin - rest, end.state, all, rest + Seam::behind);
    return readExactly(m_filter, seam.bytes() + end.filtered, rest + Seam::behind);
}

Status FilteredBlock::next(std::size_t limit, Bytes &bytes)
{
    return m_filter.next(limit, bytes);
}

Status FilteredBlock::finish(Seam &seam)
{
    Seam::End end = {};
    const Status status
        = m_filter.readUnfinished(end.bytes, sizeof end.bytes, end.filtered, end.state);
    if (status == Status::Ok) {
        seam.setEnd(end);
    }
    return status;
}

} // namespace sfx
