// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/peheaders.h"

#include <algorithm>

namespace pe {

namespace {

constexpr std::size_t coffHeaderSize = 20;
// Windows does not load programs with larger headers, so a larger e_lfanew is an error or an attack.
constexpr std::uint64_t maxHeaderOffset = 1U << 20;

Error notPe(const char *what)
{
    return {ErrorKind::NotPe, what};
}

Error damaged(const char *what)
{
    return {ErrorKind::Damaged, what};
}

bool isPowerOfTwo(std::uint32_t value)
{
    return value != 0 && (value & (value - 1)) == 0;
}

Section parseSection(ByteView row)
{
    Section section;
    const auto name = row.first(8);
    section.name.assign(name.begin(), std::find(name.begin(), name.end(), 0));
    section.virtualSize = read32(row, 8);
    section.virtualAddress = read32(row, 12);
    section.rawSize = read32(row, 16);
    section.rawPointer = read32(row, 20);
    section.characteristics = read32(row, 36);
    return section;
}

// The offset of the COFF header, which follows the PE signature.
Result<std::size_t> findCoffHeader(const File &file)
{
    if (file.size() < 64) {
        return notPe("not a Windows program: too short");
    }
    const auto dos = file.readAt(0, std::size_t{64});
    if (dos.hasError()) {
        return dos.error();
    }
    if (dos.value()[0] != 'M' || dos.value()[1] != 'Z') {
        return notPe("not a Windows program: no MZ signature");
    }
    const std::uint32_t offset = read32(dos.value(), 60);
    if (offset % 4 != 0 || offset > maxHeaderOffset
        || !fits(offset, 4 + coffHeaderSize, file.size())) {
        return notPe("not a Windows program: no PE header where the DOS header points");
    }
    const auto signature = file.readAt(offset, std::size_t{4});
    if (signature.hasError()) {
        return signature.error();
    }
    if (read32(signature.value(), 0) != 0x00004550) {
        return notPe("not a Windows program: no PE signature");
    }
    return std::size_t{offset} + 4;
}

} // namespace

Result<PeHeaders> PeHeaders::read(const File &file)
{
    const auto coffOffset = findCoffHeader(file);
    if (coffOffset.hasError()) {
        return coffOffset.error();
    }
    PeHeaders headers;
    headers.m_coff = coffOffset.value();
    headers.m_optional = headers.m_coff + coffHeaderSize;
    const auto coff = file.readAt(headers.m_coff, coffHeaderSize);
    if (coff.hasError()) {
        return coff.error();
    }
    const std::size_t sectionCount = read16(coff.value(), 2);
    const std::size_t optionalSize = read16(coff.value(), 16);
    headers.m_table = headers.m_optional + optionalSize;
    const std::size_t tableEnd = headers.m_table + sectionRowSize * sectionCount;
    if (sectionCount > maxSections) {
        return damaged("the header counts more sections than Windows allows");
    }
    if (tableEnd > file.size()) {
        return damaged("the file ends inside its headers");
    }
    const std::size_t wanted = std::min<std::uint64_t>(tableEnd + sectionRowSize, file.size());
    auto bytes = file.readAt(0, wanted);
    if (bytes.hasError()) {
        return bytes.error();
    }
    headers.m_bytes = std::move(bytes.value());
    if (const auto read = headers.readOptionalHeader(optionalSize); read.hasError()) {
        return read.error();
    }
    headers.readSections(sectionCount);
    // Bytes after the headers may belong to a section: they must not be written with the headers.
    headers.m_bytes.resize(std::clamp<std::size_t>(headers.sizeOfHeaders(), tableEnd, wanted));
    return headers;
}

Result<Done> PeHeaders::readOptionalHeader(std::size_t size)
{
    const std::uint16_t magic = size >= 2 ? read16(m_bytes, m_optional) : 0;
    if (magic != 0x10b && magic != 0x20b) {
        return notPe("not a Windows program: neither PE32 nor PE32+");
    }
    const std::size_t fixedSize = magic == 0x20b ? 112 : 96;
    if (size < fixedSize) {
        return damaged("the optional header is too short");
    }
    m_directories = m_optional + fixedSize;
    m_directoryCount = std::min<std::size_t>(
        {read32(m_bytes, m_directories - 4), (size - fixedSize) / 8, std::size_t{16}});
    return Done{};
}

void PeHeaders::readSections(std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        m_sections.push_back(parseSection(ByteView(m_bytes).subspan(rowOffset(i), sectionRowSize)));
    }
}

Result<Done> PeHeaders::checkForEditing(std::uint64_t fileSize) const
{
    if (!isPowerOfTwo(fileAlignment()) || !isPowerOfTwo(sectionAlignment())
        || fileAlignment() > 0x10000 || sectionAlignment() < fileAlignment()
        || sectionAlignment() > 0x1000000) {
        return damaged("the section or file alignment in the header is invalid");
    }
    if (sizeOfHeaders() > fileSize || sizeOfHeaders() < rowOffset(m_sections.size())) {
        return damaged("SizeOfHeaders in the header is invalid");
    }
    std::uint64_t next = sizeOfHeaders();
    for (const Section &section : m_sections) {
        if (section.virtualAddress < next || section.virtualEnd() > 0x80000000U) {
            return damaged("the sections overlap or lie outside the address space");
        }
        next = section.virtualEnd();
        if (section.hasRawData() && section.rawEnd() > fileSize) {
            return damaged("a section lies outside the file");
        }
    }
    return Done{};
}

DataDirectory PeHeaders::directory(std::size_t index) const
{
    if (index >= m_directoryCount) {
        return {};
    }
    const std::size_t position = m_directories + 8 * index;
    return {read32(m_bytes, position), read32(m_bytes, position + 4)};
}

DataDirectory PeHeaders::directory(Directory which) const
{
    return directory(static_cast<std::size_t>(which));
}

std::optional<std::size_t> PeHeaders::sectionOf(std::uint32_t rva) const
{
    const auto found = std::find_if(m_sections.begin(), m_sections.end(),
                                    [&](const Section &section) { return section.holdsRva(rva); });
    if (found == m_sections.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - m_sections.begin());
}

std::optional<std::uint64_t> PeHeaders::offsetOf(std::uint32_t rva) const
{
    const auto index = sectionOf(rva);
    if (!index) {
        return std::nullopt;
    }
    const Section &section = m_sections[*index];
    const std::uint32_t inside = rva - section.virtualAddress;
    if (!section.hasRawData() || inside >= section.rawSize) {
        return std::nullopt;
    }
    return std::uint64_t{section.rawPointer} + inside;
}

std::uint64_t PeHeaders::imageEnd() const
{
    std::uint64_t end = sizeOfHeaders();
    for (const Section &section : m_sections) {
        if (section.hasRawData()) {
            end = std::max(end, section.rawEnd());
        }
    }
    return end;
}

} // namespace pe
