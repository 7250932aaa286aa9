// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/peheaders.h"

#include <algorithm>
#include <cstring>

namespace pe {

namespace {

constexpr std::uint32_t initializedData = 0x40; // IMAGE_SCN_CNT_INITIALIZED_DATA

// An offset of 0 means "none" and stays.
std::uint32_t shifted(std::uint32_t offset, std::uint64_t at, std::uint64_t length)
{
    return offset != 0 && offset >= at ? static_cast<std::uint32_t>(offset + length) : offset;
}

} // namespace

void PeHeaders::setTimeStamp(std::uint32_t value)
{
    write32(m_bytes, m_coff + 4, value);
}

void PeHeaders::addCharacteristics(std::uint16_t flags)
{
    const std::size_t position = m_coff + 18;
    const auto old = static_cast<std::uint32_t>(read16(m_bytes, position));
    write16(m_bytes, position, static_cast<std::uint16_t>(old | flags));
}

void PeHeaders::setDirectory(Directory which, DataDirectory value)
{
    const std::size_t position = m_directories + 8 * static_cast<std::size_t>(which);
    write32(m_bytes, position, value.address);
    write32(m_bytes, position + 4, value.size);
}

void PeHeaders::storeSection(std::size_t index)
{
    const Section &section = m_sections[index];
    const auto row = std::span(m_bytes).subspan(rowOffset(index), sectionRowSize);
    write32(row, 8, section.virtualSize);
    write32(row, 12, section.virtualAddress);
    write32(row, 16, section.rawSize);
    write32(row, 20, section.rawPointer);
}

void PeHeaders::updateSizeOfImage()
{
    std::uint64_t end = sizeOfHeaders();
    for (const Section &section : m_sections) {
        end = std::max(end, section.virtualEnd());
    }
    setOptional32(SizeOfImage, static_cast<std::uint32_t>(alignUp(end, sectionAlignment())));
}

void PeHeaders::setSection(std::size_t index, const Section &section)
{
    const Section old = m_sections[index];
    m_sections[index] = section;
    storeSection(index);
    // Add the difference, do not count anew: linkers count differently.
    if ((old.characteristics & initializedData) != 0 && section.rawSize != old.rawSize) {
        setOptional32(SizeOfInitializedData,
                      optional32(SizeOfInitializedData) + section.rawSize - old.rawSize);
    }
    if (section.virtualEnd() != old.virtualEnd()) {
        updateSizeOfImage();
    }
}

bool PeHeaders::hasRoomForSection() const
{
    const std::size_t end = rowOffset(m_sections.size()) + sectionRowSize;
    std::uint64_t limit = std::min<std::uint64_t>(sizeOfHeaders(), m_bytes.size());
    for (const Section &section : m_sections) {
        if (section.hasRawData()) {
            limit = std::min<std::uint64_t>(limit, section.rawPointer);
        }
    }
    // Some linkers write bound imports or notes after the table.
    return end <= limit && m_sections.size() < maxSections
        && std::all_of(m_bytes.begin() + static_cast<std::ptrdiff_t>(end - sectionRowSize),
                       m_bytes.begin() + static_cast<std::ptrdiff_t>(end),
                       [](std::uint8_t byte) { return byte == 0; });
}

void PeHeaders::appendSection(const Section &section)
{
    const std::size_t index = m_sections.size();
    m_sections.push_back(section);
    std::memcpy(m_bytes.data() + rowOffset(index), section.name.data(),
                std::min<std::size_t>(section.name.size(), 8));
    write32(m_bytes, rowOffset(index) + 36, section.characteristics);
    storeSection(index);
    write16(m_bytes, m_coff + 2, static_cast<std::uint16_t>(m_sections.size()));
    setOptional32(SizeOfInitializedData, optional32(SizeOfInitializedData) + section.rawSize);
    updateSizeOfImage();
}

void PeHeaders::shiftFileOffsets(std::uint64_t at, std::uint64_t length)
{
    write32(m_bytes, m_coff + 8, shifted(read32(m_bytes, m_coff + 8), at, length));
    for (std::size_t i = 0; i < m_sections.size(); ++i) {
        if (m_sections[i].hasRawData()) {
            m_sections[i].rawPointer = shifted(m_sections[i].rawPointer, at, length);
            storeSection(i);
        }
        for (const std::size_t field : {std::size_t{24}, std::size_t{28}}) {
            const std::size_t position = rowOffset(i) + field;
            write32(m_bytes, position, shifted(read32(m_bytes, position), at, length));
        }
    }
    const DataDirectory security = directory(Directory::Security);
    if (security.size != 0) {
        setDirectory(Directory::Security, {shifted(security.address, at, length), security.size});
    }
}

} // namespace pe
