// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/bytes.h"
#include "helpers/pe/file.h"

#include <optional>
#include <string>
#include <vector>

namespace pe {

// One row of the section table. The numbers are as in the file: they may be nonsense.
struct Section
{
    std::string name; // as stored, without the padding
    std::uint32_t virtualSize = 0;
    std::uint32_t virtualAddress = 0;
    std::uint32_t rawSize = 0;
    std::uint32_t rawPointer = 0;
    std::uint32_t characteristics = 0;

    bool hasRawData() const { return rawSize != 0 && rawPointer != 0; }
    std::uint64_t rawEnd() const { return std::uint64_t{rawPointer} + rawSize; }
    // The number of bytes in memory. Old linkers leave VirtualSize 0.
    std::uint32_t extent() const { return virtualSize != 0 ? virtualSize : rawSize; }
    std::uint64_t virtualEnd() const { return std::uint64_t{virtualAddress} + extent(); }
    bool holdsRva(std::uint32_t rva) const { return rva >= virtualAddress && rva < virtualEnd(); }
};

// The data directories that are used here, by their index (PE format, "Optional Header Data
// Directories").
enum class Directory {
    Resource = 2,
    Security = 4,
    BaseRelocation = 5,
    Debug = 6,
    LoadConfig = 10,
    Clr = 14, // of .NET programs
};

struct DataDirectory
{
    std::uint32_t address = 0; // an RVA; of the security directory alone a file offset
    std::uint32_t size = 0;
};

// The headers of a PE32 or PE32+ file: from the first byte to the end of the section table, with the
// room for one more row after it. Changes stay in memory; the caller writes bytes() to the file.
// Layout: Microsoft's "PE Format" document.
class PeHeaders
{
public:
    // Fails with NotPe if the file is not a program, with Damaged if its headers do not fit the file.
    static Result<PeHeaders> read(const File &file);

    // Fails with Damaged if the section table is not consistent enough to edit the file by it.
    Result<Done> checkForEditing(std::uint64_t fileSize) const;

    // The processor that the program is made for (PE format, "Machine Types").
    std::uint16_t machine() const { return read16(m_bytes, m_coff); }
    // Whether it has windows or a console (PE format, "Windows Subsystem").
    std::uint16_t subsystem() const { return read16(m_bytes, m_optional + Subsystem); }
    void setSubsystem(std::uint16_t value) { write16(m_bytes, m_optional + Subsystem, value); }
    std::uint16_t characteristics() const { return read16(m_bytes, m_coff + 18); } // IMAGE_FILE_...
    bool isPe32Plus() const { return read16(m_bytes, m_optional) == 0x20b; }
    std::uint32_t fileAlignment() const { return optional32(FileAlignment); }
    std::uint32_t sectionAlignment() const { return optional32(SectionAlignment); }
    std::uint32_t entryPoint() const { return optional32(AddressOfEntryPoint); }
    std::uint32_t sizeOfHeaders() const { return optional32(SizeOfHeaders); }
    // 0 means that the file has no checksum.
    void clearCheckSum() { setCheckSum(0); }
    void setCheckSum(std::uint32_t value) { setOptional32(CheckSum, value); }
    void setTimeStamp(std::uint32_t value);
    void addCharacteristics(std::uint16_t flags);

    const std::vector<Section> &sections() const { return m_sections; }
    std::size_t directoryCount() const { return m_directoryCount; }
    DataDirectory directory(std::size_t index) const; // {0, 0} beyond directoryCount()
    DataDirectory directory(Directory which) const;
    void setDirectory(Directory which, DataDirectory value); // index below directoryCount()

    // The file offset of the bytes at an RVA; nothing if the file does not contain them.
    std::optional<std::uint64_t> offsetOf(std::uint32_t rva) const;
    // The index of the section that contains an RVA.
    std::optional<std::size_t> sectionOf(std::uint32_t rva) const;
    // The offset after the image, where appended data begin.
    std::uint64_t imageEnd() const;

    // Replaces a row of the section table and adjusts SizeOfImage and SizeOfInitializedData.
    void setSection(std::size_t index, const Section &section);
    bool hasRoomForSection() const;
    void appendSection(const Section &section); // needs hasRoomForSection()
    // Adjusts every file offset in the headers after `length` bytes were inserted at `at`.
    void shiftFileOffsets(std::uint64_t at, std::uint64_t length);

    const Bytes &bytes() const { return m_bytes; }

private:
    // Offsets in the optional header, with the names of the document. They are the same in PE32 and PE32+.
    enum OptionalField : std::size_t {
        SizeOfInitializedData = 8,
        AddressOfEntryPoint = 16,
        SectionAlignment = 32,
        FileAlignment = 36,
        SizeOfImage = 56,
        SizeOfHeaders = 60,
        CheckSum = 64,
        Subsystem = 68,
    };
    static constexpr std::size_t sectionRowSize = 40;
    static constexpr std::size_t maxSections = 96; // the loader's limit

    std::uint32_t optional32(OptionalField field) const
    {
        return read32(m_bytes, m_optional + field);
    }
    void setOptional32(OptionalField field, std::uint32_t value)
    {
        write32(m_bytes, m_optional + field, value);
    }
    Result<Done> readOptionalHeader(std::size_t size);
    void readSections(std::size_t count);
    void storeSection(std::size_t index);
    void updateSizeOfImage();
    std::size_t rowOffset(std::size_t index) const { return m_table + sectionRowSize * index; }

    Bytes m_bytes;
    std::size_t m_coff = 0;        // offset of the COFF file header
    std::size_t m_optional = 0;    // offset of the optional header
    std::size_t m_directories = 0; // offset of the first data directory
    std::size_t m_directoryCount = 0;
    std::size_t m_table = 0; // offset of the section table
    std::vector<Section> m_sections;
};

} // namespace pe
