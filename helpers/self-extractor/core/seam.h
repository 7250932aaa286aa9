// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/core/thread.h"

#include <cstddef>
#include <cstdint>

namespace sfx {

/// The few bytes around the border of two blocks, where the filter for x86 needs to know both: an
/// instruction may lie across it, and what the filter remembers of the bytes before it counts. Five
/// bytes without the opcode of a call or jump (0xe8, 0xe9) make it forget all, and no operand reaches
/// behind them; so a block is filtered from the first such place on, by itself. What lies before it
/// is filtered here when both blocks are done.
class Seam
{
public:
    /// How far it reaches to both sides of the border, in bytes.
    static constexpr std::size_t before = 8;
    static constexpr std::size_t behind = 4096;
    static constexpr std::size_t size = before + behind;

    /// The last bytes of the block before the border, the first `filtered` of them filtered, and what
    /// the filter remembers there.
    struct End
    {
        std::uint8_t bytes[before] = {};
        std::size_t filtered = 0;
        std::uint32_t state = 0;
    };

    Seam() = default;

    /// The offset from the border where a block can be filtered without those before it, from its
    /// first bytes. `behind`: there is none.
    static std::size_t findFreshStart(const std::uint8_t (&bytes)[behind]);

    /// From the thread of the block before.
    void setEnd(const End &end);
    /// Waits for setEnd(). False: abandon() has been called; it is not going to come.
    bool waitForEnd(End &end);
    void abandon();

    /// The `size` bytes from `before` before the border on. The thread of the block behind puts there
    /// what is behind the border: unfiltered up to the fresh start that it names then; or all of it
    /// filtered and what is before the border too, without naming any.
    std::uint8_t *bytes() { return m_bytes; }
    void setFreshStart(std::size_t offset) { m_freshStart = offset; }

    /// Filters what is left, when both blocks are done. `border` is its place in the folder.
    void close(std::uint64_t border);

private:
    std::uint8_t m_bytes[size] = {};
    std::size_t m_freshStart = 0; // none

    Monitor m_monitor; // for the rest
    End m_end;
    bool m_hasEnd = false;
    bool m_isAbandoned = false;
};

} // namespace sfx
