// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/blockreader.h"

#include <algorithm>
#include <cstring>

#include "7zCrc.h"
#include "Bra.h"

namespace fast {

namespace {

constexpr std::size_t bufferSize = 1U << 20;

} // namespace

BlockReader::BlockReader(const Source &source, const SolidBlock &block, Progress &progress)
    : m_source(source)
    , m_block(block)
    , m_progress(progress)
{
}

// The filter cannot convert the last bytes of the buffer before it knows those that follow. They
// stay in the buffer for the next call.
Outcome<pe::ByteView> BlockReader::next()
{
    if (m_buffer.empty()) {
        m_buffer.resize(bufferSize);
    }
    std::copy(m_buffer.begin() + static_cast<std::ptrdiff_t>(m_returned),
              m_buffer.begin() + static_cast<std::ptrdiff_t>(m_used), m_buffer.begin());
    m_used -= m_returned;
    m_returned = 0;
    const auto filled = fill();
    if (filled.hasFailed()) {
        return filled.failure();
    }
    const bool isEnd = m_position == m_block.files.size();
    m_returned = m_block.isFiltered ? convert(isEnd) : m_used;
    return pe::ByteView(m_buffer.data(), m_returned);
}

// Returns how many bytes at the beginning of the buffer are final.
std::size_t BlockReader::convert(bool isEnd)
{
    const Byte *const end
        = z7_BranchConvSt_X86_Enc(m_buffer.data(), m_used, m_filterPosition, &m_filterState);
    const auto converted = static_cast<std::size_t>(end - m_buffer.data());
    m_filterPosition += static_cast<std::uint32_t>(converted);
    return isEnd ? m_used : converted;
}

Outcome<Done> BlockReader::fill()
{
    while (m_used < m_buffer.size() && m_position < m_block.files.size()) {
        if (m_progress.isStopped()) {
            return Failure{ExitStatus::Interrupted, {}};
        }
        if (!m_isOpen) {
            auto opened = openNext();
            if (opened.hasFailed()) {
                return opened;
            }
        }
        const std::uint64_t left = current().size - m_offset;
        const auto wanted
            = static_cast<std::size_t>(std::min<std::uint64_t>(left, m_buffer.size() - m_used));
        auto done = read(wanted);
        if (!done.hasFailed() && wanted == left) {
            done = finishFile();
        }
        if (done.hasFailed()) {
            return done;
        }
    }
    return Done{};
}

Outcome<Done> BlockReader::openNext()
{
    const SourceFile &file = current();
    m_progress.beginFile(pe::utf8Of(file.place));
    m_offset = 0;
    m_checkSum = CRC_INIT_VAL;
    if (!file.isLink) {
        auto opened = pe::File::open(m_source.folder + file.place, pe::File::Access::Read);
        if (opened.hasError()) {
            return failureOf(m_source.folder + file.place, opened.error());
        }
        m_file = std::move(opened.value());
        if (m_file.size() != file.size) {
            return changed();
        }
    }
    m_isOpen = true;
    return Done{};
}

Outcome<Done> BlockReader::read(std::size_t wanted)
{
    const SourceFile &file = current();
    const auto place = std::span(m_buffer).subspan(m_used, wanted);
    if (file.isLink) {
        std::memcpy(place.data(), file.linkTarget.data() + m_offset, wanted);
    } else if (const auto got = m_file.readAt(m_offset, place); got.hasError()) {
        const bool isShorter = got.error().kind == pe::ErrorKind::Damaged;
        return isShorter ? changed() : failureOf(m_source.folder + file.place, got.error());
    }
    m_checkSum = CrcUpdate(m_checkSum, place.data(), wanted);
    m_used += wanted;
    m_offset += wanted;
    m_progress.addBytes(wanted);
    return Done{};
}

Outcome<Done> BlockReader::finishFile()
{
    std::uint8_t more = 0;
    if (!current().isLink && !m_file.readAt(m_offset, std::span(&more, 1)).hasError()) {
        return changed();
    }
    m_file = pe::File();
    m_isOpen = false;
    m_checkSums.push_back(CRC_GET_DIGEST(m_checkSum));
    ++m_position;
    return Done{};
}

Failure BlockReader::changed() const
{
    return failureOf(m_source.folder + current().place,
                     {pe::ErrorKind::CannotRead, "has changed while it was packed"});
}

} // namespace fast
