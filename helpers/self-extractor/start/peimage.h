// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/bytesource.h"
#include "helpers/self-extractor/base/memory.h"
#include "helpers/self-extractor/base/status.h"

namespace sfx {

// The executable image at the beginning of a file, by its headers (Microsoft PE/COFF specification).
class PeImage
{
public:
    // Damaged: there is no image, or it does not lie in the file completely.
    Status read(ByteSource &source);

    // The end of the last section on disk, by the section table. Appended data begins there, even if
    // a resource editor has changed the image.
    std::uint64_t end() const { return m_end; }
    // Where the resource directory will be in memory; 0 if there is none.
    std::uint32_t resources() const { return m_resources; }
    // Finds the bytes in the file that will be at the address `rva` in memory. Returns false if a
    // section does not contain all of them.
    [[nodiscard]] bool find(std::uint64_t rva, std::uint64_t size, std::uint64_t &offset) const;

private:
    Status readSections(ByteSource &source, std::uint64_t offset, unsigned count);
    Status readResourceAddress(ByteSource &source, std::uint64_t offset, unsigned size);

    Array<std::uint8_t> m_sections; // the rows of the section table
    std::uint64_t m_end = 0;
    std::uint32_t m_resources = 0;
};

} // namespace sfx
