// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/progress.h"

#include <algorithm>

namespace fast {

namespace {

// Longer names are left out, so that the line stays one line in a terminal.
constexpr std::size_t longestName = 60;
constexpr std::size_t percentageWidth = 4;

} // namespace

void Progress::beginFile(const std::string &name)
{
    const std::lock_guard lock(m_mutex);
    ++m_files;
    m_name = name.size() <= longestName ? name : std::string();
    std::replace_if(
        m_name.begin(), m_name.end(), [](char letter) { return letter >= 0 && letter < ' '; }, '_');
}

unsigned Progress::percentage() const
{
    const std::uint64_t total = m_total;
    const std::uint64_t bytes = std::min<std::uint64_t>(m_bytes, total);
    // In this order a total beyond 2^57 bytes would overflow.
    return total == 0 ? 0 : static_cast<unsigned>(bytes * 100 / total);
}

std::string Progress::line() const
{
    std::string text = std::to_string(percentage()) + '%';
    text.insert(0, percentageWidth - text.size(), ' ');
    const std::lock_guard lock(m_mutex);
    if (m_files != 0) {
        text += ' ' + std::to_string(m_files) + " +";
    }
    if (!m_name.empty()) {
        text += ' ' + m_name;
    }
    return text;
}

} // namespace fast
