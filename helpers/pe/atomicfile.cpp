// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/atomicfile.h"

#include <algorithm>
#include <utility>

namespace pe {

namespace {

constexpr std::size_t copiedAtOnce = 4U << 20;

} // namespace

AtomicFile::AtomicFile(const NativePath &target) : m_target(withoutLink(target)) {}

AtomicFile::AtomicFile(AtomicFile &&other) noexcept
    : m_file(std::move(other.m_file))
    , m_target(std::move(other.m_target))
    , m_temporary(std::exchange(other.m_temporary, {}))
{
}

Result<Done> AtomicFile::copyThroughMemory(const File &source, const FileRange &range,
                                           std::uint64_t to)
{
    Bytes buffer(std::min<std::uint64_t>(range.end - range.begin, copiedAtOnce));
    for (std::uint64_t from = range.begin; from < range.end;) {
        const auto part
            = std::span(buffer).first(std::min<std::uint64_t>(range.end - from, buffer.size()));
        if (auto read = source.readAt(from, part); read.hasError()) {
            return read;
        }
        if (auto written = m_file.writeAt(to, part); written.hasError()) {
            return written;
        }
        from += part.size();
        to += part.size();
    }
    return Done{};
}

} // namespace pe
