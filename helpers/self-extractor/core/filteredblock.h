// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/core/filterstream.h"
#include "helpers/self-extractor/core/seam.h"

namespace sfx {

/// Undoes the filter for x86 in one block of a folder, without waiting for the one before it, but for
/// rare cases. What is read is the block without its seams.
class FilteredBlock final : public Stream
{
public:
    /// `block` gives the unfiltered block, which begins at `begin` in its folder.
    FilteredBlock(Owned<Stream> block, std::uint64_t begin);

    /// To be called once, before next(). `seam`, which lies before the block, may be null.
    Status open(Seam *seam);
    Status next(std::size_t limit, Bytes &bytes) override;
    /// To be called when all of it has been read and a seam lies behind the block.
    Status finish(Seam &seam);

private:
    Status enter(Seam &seam);
    Status enterBehind(Seam &seam, const std::uint8_t (&bytes)[Seam::behind]);

    Stream &m_block; // the filter's
    const std::uint64_t m_begin;
    FilterStream m_filter;
};

} // namespace sfx
