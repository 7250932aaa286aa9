// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/decoding/filterstream.h"

#include "helpers/self-extractor/base/littleendian.h"
#include "helpers/self-extractor/decoding/methods.h"

#include "Bra.h"
#include "Delta.h"

#include <algorithm>
#include <cstring>

namespace sfx {

namespace {

constexpr std::size_t bufferSize = 256 * 1024;

static_assert(DELTA_STATE_SIZE == sizeof(FilterStream::State::delta));

template <z7_Func_BranchConv Function>
std::size_t convertBranches(FilterStream::State &state, std::uint8_t *data, std::size_t size)
{
    return static_cast<std::size_t>(Function(data, size, state.pc) - data);
}

std::size_t convertX86(FilterStream::State &state, std::uint8_t *data, std::size_t size)
{
    return static_cast<std::size_t>(z7_BranchConvSt_X86_Dec(data, size, state.pc, &state.x86)
                                    - data);
}

std::size_t undoDelta(FilterStream::State &state, std::uint8_t *data, std::size_t size)
{
    Delta_Decode(state.delta, state.deltaDistance, data, size);
    return size;
}

struct Filter
{
    std::uint32_t method;
    FilterStream::Convert convert;
    std::uint32_t pcMask; // bits that must be 0 in a start address; ~0: it takes no start address
};

constexpr Filter filters[] = {
    {method::Delta, undoDelta, ~0u},
    {method::X86, convertX86, ~0u},
    {method::Ppc, convertBranches<z7_BranchConv_PPC_Dec>, ~0u},
    {method::Ia64, convertBranches<z7_BranchConv_IA64_Dec>, ~0u},
    {method::Arm, convertBranches<z7_BranchConv_ARM_Dec>, ~0u},
    {method::ArmThumb, convertBranches<z7_BranchConv_ARMT_Dec>, ~0u},
    {method::Sparc, convertBranches<z7_BranchConv_SPARC_Dec>, ~0u},
    {method::Arm64, convertBranches<z7_BranchConv_ARM64_Dec>, 3},
    {method::RiscV, convertBranches<z7_BranchConv_RISCV_Dec>, 1},
};

} // namespace

Status FilterStream::open(std::uint32_t method, const std::uint8_t *properties, std::size_t size)
{
    for (const Filter &filter : filters) {
        if (filter.method != method) {
            continue;
        }
        m_convert = filter.convert;
        if (method == method::Delta && size == 1) {
            m_state.deltaDistance = properties[0] + 1u;
        } else if (filter.pcMask != ~0u && size == 4) {
            m_state.pc = readU32(properties);
            if ((m_state.pc & filter.pcMask) != 0) {
                return Status::Unsupported;
            }
        } else if (size != 0 || method == method::Delta) {
            return Status::Unsupported;
        }
        return m_buffer.allocate(bufferSize) ? Status::Ok : Status::NoMemory;
    }
    return Status::Unsupported;
}

// Moves the unconverted rest to the front, appends more input, and converts as much as possible.
Status FilterStream::refill()
{
    std::memmove(m_buffer.data(), m_buffer.data() + m_begin, m_end - m_begin);
    m_end -= m_begin;
    m_begin = 0;
    m_converted = 0;
    std::size_t got = 0;
    const Status status
        = readFully(*m_input, m_buffer.data() + m_end, m_buffer.size() - m_end, got);
    if (status != Status::Ok) {
        return status;
    }
    m_end += got;
    if (m_end != 0) {
        m_converted = m_convert(m_state, m_buffer.data(), m_end);
        m_state.pc += static_cast<std::uint32_t>(m_converted);
    }
    if (m_converted == 0) {
        m_converted = m_end; // a rest too short for an instruction stays unchanged
    }
    return Status::Ok;
}

Status FilterStream::next(std::size_t limit, ByteView &bytes)
{
    bytes = ByteView();
    if (m_begin == m_converted) {
        const Status status = refill();
        if (status != Status::Ok) {
            return status;
        }
    }
    bytes = {m_buffer.data() + m_begin, std::min(limit, m_converted - m_begin)};
    m_begin += bytes.size;
    return Status::Ok;
}

} // namespace sfx
