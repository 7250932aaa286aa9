// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/peimage.h"

#include "helpers/self-extractor/base/littleendian.h"

namespace sfx {

namespace {

constexpr std::size_t dosHeaderSize = 64;
constexpr std::size_t peHeaderSize = 24; // signature and COFF header
constexpr std::size_t sectionSize = 40;
constexpr unsigned maxSections = 96; // the Windows loader's own limit

// Of the optional header. The module is a PE32+ program; the resources of others do not count.
constexpr unsigned pe32PlusMagic = 0x20b;
constexpr unsigned directoriesInPe32Plus = 112;
constexpr unsigned resourceDirectory = 2; // index
constexpr unsigned directorySize = 8;

} // namespace

Status PeImage::read(ByteSource &source)
{
    std::uint8_t dos[dosHeaderSize];
    if (!source.readAt(0, dos, sizeof dos) || dos[0] != 'M' || dos[1] != 'Z') {
        return Status::Damaged;
    }
    const std::uint64_t peOffset = readU32(dos + 0x3c);
    std::uint8_t pe[peHeaderSize];
    if (!source.readAt(peOffset, pe, sizeof pe) || readU32(pe) != 0x00004550) {
        return Status::Damaged;
    }
    const unsigned optionalSize = readU16(pe + 20);
    const std::uint64_t optional = peOffset + peHeaderSize;
    const Status status = readSections(source, optional + optionalSize, readU16(pe + 6));
    return status == Status::Ok ? readResourceAddress(source, optional, optionalSize) : status;
}

Status PeImage::readSections(ByteSource &source, std::uint64_t offset, unsigned count)
{
    if (count == 0 || count > maxSections) {
        return Status::Damaged;
    }
    if (!m_sections.allocate(count * sectionSize)) {
        return Status::NoMemory;
    }
    if (!source.readAt(offset, m_sections.data(), m_sections.size())) {
        return Status::Damaged;
    }
    m_end = offset + m_sections.size();
    for (std::size_t row = 0; row < m_sections.size(); row += sectionSize) {
        const std::uint8_t *section = m_sections.data() + row;
        const std::uint64_t rawSize = readU32(section + 16);
        const std::uint64_t rawEnd = readU32(section + 20) + rawSize;
        if (rawSize != 0 && rawEnd > m_end) {
            m_end = rawEnd;
        }
    }
    return m_end <= source.size() ? Status::Ok : Status::Damaged;
}

Status PeImage::readResourceAddress(ByteSource &source, std::uint64_t offset, unsigned size)
{
    std::uint8_t header[directoriesInPe32Plus + (resourceDirectory + 1) * directorySize];
    m_resources = 0;
    if (size < sizeof header) {
        return Status::Ok;
    }
    if (!source.readAt(offset, header, sizeof header)) {
        return Status::Damaged;
    }
    const std::uint8_t *entry = header + directoriesInPe32Plus + resourceDirectory * directorySize;
    if (readU16(header) == pe32PlusMagic
        && readU32(header + directoriesInPe32Plus - 4) > resourceDirectory
        && readU32(entry + 4) != 0) {
        m_resources = readU32(entry);
    }
    return Status::Ok;
}

bool PeImage::find(std::uint64_t rva, std::uint64_t size, std::uint64_t &offset) const
{
    for (std::size_t row = 0; row < m_sections.size(); row += sectionSize) {
        const std::uint8_t *section = m_sections.data() + row;
        const std::uint64_t address = readU32(section + 12);
        const std::uint64_t rawSize = readU32(section + 16);
        if (rva >= address && rva - address <= rawSize && size <= rawSize - (rva - address)) {
            offset = readU32(section + 20) + (rva - address);
            return true;
        }
    }
    return false;
}

} // namespace sfx
