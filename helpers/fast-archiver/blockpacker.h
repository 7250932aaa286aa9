// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/fast-archiver/archiveheader.h"
#include "helpers/fast-archiver/blockreader.h"
#include "helpers/fast-archiver/frameplan.h"
#include "helpers/fast-archiver/orderedoutput.h"

#include <memory>

struct ZSTD_CCtx_s;

namespace fast {

// Packs blocks with libzstd, one after the other, each as one frame. Use it on one thread.
class BlockPacker
{
public:
    BlockPacker(const Source &source, OrderedOutput &output, Progress &progress);

    // Packs the block with this number. `threads` counts only for a block that is packed in parts.
    Outcome<PackedBlock> pack(const SolidBlock &block, std::size_t number, const FramePlan &plan,
                              unsigned threads);

private:
    Outcome<Done> prepare(const SolidBlock &block, const FramePlan &plan, unsigned threads);
    Outcome<Done> compress(pe::ByteView bytes, bool isEnd, std::size_t number, PackedBlock &packed);

    struct ContextDeleter
    {
        void operator()(ZSTD_CCtx_s *context) const;
    };

    const Source &m_source;
    OrderedOutput &m_output;
    Progress &m_progress;
    std::unique_ptr<ZSTD_CCtx_s, ContextDeleter> m_context;
    pe::Bytes m_packed;
};

} // namespace fast
