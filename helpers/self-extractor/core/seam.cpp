// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/core/seam.h"

#include "Bra.h"

#include <cstring>

namespace sfx {

namespace {

constexpr std::size_t forgetfulness = 5; // bytes: an opcode and its operand

bool isOpcode(std::uint8_t byte)
{
    return (byte & 0xfe) == 0xe8;
}

} // namespace

std::size_t Seam::findFreshStart(const std::uint8_t (&bytes)[behind])
{
    std::size_t clean = 0;
    for (std::size_t i = 0; i < behind; ++i) {
        if (clean == forgetfulness) {
            return i;
        }
        clean = isOpcode(bytes[i]) ? 0 : clean + 1;
    }
    return behind;
}

void Seam::setEnd(const End &end)
{
    const Locked lock(m_monitor);
    m_end = end;
    m_hasEnd = true;
    m_monitor.wake();
}

bool Seam::waitForEnd(End &end)
{
    const Locked lock(m_monitor);
    while (!m_hasEnd && !m_isAbandoned) {
        m_monitor.wait();
    }
    end = m_end;
    return m_hasEnd;
}

void Seam::abandon()
{
    const Locked lock(m_monitor);
    m_isAbandoned = true;
    m_monitor.wake();
}

void Seam::close(std::uint64_t border)
{
    if (m_freshStart == 0) {
        return;
    }
    std::memcpy(m_bytes, m_end.bytes, before);
    const std::uint64_t place = border - before + m_end.filtered;
    z7_BranchConvSt_X86_Dec(m_bytes + m_end.filtered, before + m_freshStart - m_end.filtered,
                            static_cast<std::uint32_t>(place), &m_end.state);
}

} // namespace sfx
