// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/blockpacker.h"

#include <zstd.h>
#include <zstd_errors.h>

namespace fast {

namespace {

Failure failureOf(std::size_t result)
{
    const bool isMemory = ZSTD_getErrorCode(result) == ZSTD_error_memory_allocation;
    return {isMemory ? ExitStatus::NoMemory : ExitStatus::Failed,
            std::string("the data cannot be packed: ") + ZSTD_getErrorName(result)};
}

} // namespace

void BlockPacker::ContextDeleter::operator()(ZSTD_CCtx_s *context) const
{
    ZSTD_freeCCtx(context);
}

BlockPacker::BlockPacker(const Source &source, OrderedOutput &output, Progress &progress)
    : m_source(source)
    , m_output(output)
    , m_progress(progress)
    , m_context(ZSTD_createCCtx())
    , m_packed(ZSTD_CStreamOutSize())
{
}

// With at least one of libzstd's threads, the parts of a frame depend on their size alone; so the
// number of threads does not change the bytes.
Outcome<Done> BlockPacker::prepare(const SolidBlock &block, const FramePlan &plan, unsigned threads)
{
    if (!m_context) {
        return Failure{ExitStatus::NoMemory, "there is not enough memory"};
    }
    ZSTD_CCtx *const context = m_context.get();
    std::size_t result = ZSTD_CCtx_reset(context, ZSTD_reset_session_and_parameters);
    const auto set = [&](ZSTD_cParameter parameter, int value) {
        if (!ZSTD_isError(result)) {
            result = ZSTD_CCtx_setParameter(context, parameter, value);
        }
    };
    set(ZSTD_c_compressionLevel, plan.level);
    set(ZSTD_c_windowLog, static_cast<int>(plan.windowLog));
    set(ZSTD_c_minMatch, plan.minMatch);
    set(ZSTD_c_chainLog, plan.chainLog);
    set(ZSTD_c_searchLog, plan.searchLog);
    set(ZSTD_c_targetLength, plan.targetLength);
    // The usual search looks back over a part of the window; this one finds long repetitions in all
    // of it.
    set(ZSTD_c_enableLongDistanceMatching, 1);
    set(ZSTD_c_contentSizeFlag, 1);
    set(ZSTD_c_checksumFlag, 0);
    if (plan.partSize != 0) {
        set(ZSTD_c_nbWorkers, static_cast<int>(threads));
        set(ZSTD_c_jobSize, static_cast<int>(plan.partSize));
        // A part also finds what repeats the last 8 MiB before it.
        set(ZSTD_c_overlapLog, 8);
    }
    if (!ZSTD_isError(result)) {
        result = ZSTD_CCtx_setPledgedSrcSize(context, block.size);
    }
    return ZSTD_isError(result) ? Outcome<Done>(failureOf(result)) : Done{};
}

Outcome<Done> BlockPacker::compress(pe::ByteView bytes, bool isEnd, std::size_t number,
                                    PackedBlock &packed)
{
    ZSTD_inBuffer in = {bytes.data(), bytes.size(), 0};
    for (bool isDone = false; !isDone;) {
        if (m_progress.isStopped()) {
            return Failure{ExitStatus::Interrupted, {}};
        }
        ZSTD_outBuffer out = {m_packed.data(), m_packed.size(), 0};
        const std::size_t left = ZSTD_compressStream2(m_context.get(), &out, &in,
                                                      isEnd ? ZSTD_e_end : ZSTD_e_continue);
        if (ZSTD_isError(left)) {
            return failureOf(left);
        }
        auto written = m_output.write(number, pe::ByteView(m_packed).first(out.pos));
        if (written.hasFailed()) {
            return written;
        }
        packed.packedSize += out.pos;
        isDone = isEnd ? left == 0 : in.pos == in.size;
    }
    return Done{};
}

Outcome<PackedBlock> BlockPacker::pack(const SolidBlock &block, std::size_t number,
                                       const FramePlan &plan, unsigned threads)
{
    auto done = prepare(block, plan, threads);
    BlockReader reader(m_source, block, m_progress);
    PackedBlock packed;
    for (bool isEnd = false; !isEnd && !done.hasFailed();) {
        const auto bytes = reader.next();
        if (bytes.hasFailed()) {
            return bytes.failure();
        }
        isEnd = bytes.value().empty();
        done = compress(bytes.value(), isEnd, number, packed);
    }
    if (!done.hasFailed()) {
        done = m_output.finish(number);
    }
    if (done.hasFailed()) {
        return done.failure();
    }
    packed.checkSums = reader.checkSums();
    return packed;
}

} // namespace fast
