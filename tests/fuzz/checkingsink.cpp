// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/fuzz/checkingsink.h"

#include "tests/fuzz/require.h"
#include "tests/fuzz/windowsnames.h"

#include <array>

using namespace sfx;

namespace {

std::u16string pathOf(const Entry &entry)
{
    return {entry.path, entry.pathSize};
}

// CRC-32 (ISO 3309) as it is defined, one byte at a time.
std::uint32_t updated(std::uint32_t crc, const std::uint8_t *data, std::size_t size)
{
    static const auto table = [] {
        std::array<std::uint32_t, 256> values{};
        for (std::uint32_t i = 0; i < 256; ++i) {
            std::uint32_t value = i;
            for (int bit = 0; bit < 8; ++bit) {
                value = (value >> 1) ^ ((value & 1) != 0 ? 0xedb88320u : 0);
            }
            values[i] = value;
        }
        return values;
    }();
    for (std::size_t i = 0; i < size; ++i) {
        crc = (crc >> 8) ^ table[(crc ^ data[i]) & 0xff];
    }
    return crc;
}

} // namespace

void upperCaseAscii(char16_t *text, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i) {
        if (text[i] >= u'a' && text[i] <= u'z') {
            text[i] = static_cast<char16_t>(text[i] - u'a' + u'A');
        }
    }
}

Status CheckingSink::begin(std::uint64_t totalBytes, std::uint32_t entries)
{
    require(!m_hasBegun, "unpacking begins once");
    require(totalBytes == m_totalBytes && entries == m_archive.entryCount(),
            "the sums that are announced are those of the check");
    m_hasBegun = true;
    return Status::Ok;
}

void CheckingSink::checkEntry(const Entry &entry)
{
    require(m_hasBegun && !m_isInFile && !m_isFull, "one entry at a time, after the beginning");
    require(windowsnames::isRelativePath(pathOf(entry)), "a path stays below its folder");
    require((entry.attributes & ~0x27u) == 0, "attributes are the four harmless ones");
    ++m_entries;
}

Status CheckingSink::makeFolder(const Entry &folder)
{
    checkEntry(folder);
    require(folder.isFolder && folder.size == 0, "a folder is one, and has no content");
    m_folders.push_back(pathOf(folder));
    return Status::Ok;
}

Status CheckingSink::beginFile(const Entry &file)
{
    checkEntry(file);
    require(!file.isFolder, "a file is no folder");
    m_isInFile = true;
    m_inFile = 0;
    m_crc = 0xffffffff;
    m_path = pathOf(file);
    return Status::Ok;
}

Status CheckingSink::write(const std::uint8_t *data, std::size_t size)
{
    require(m_isInFile && !m_isFull, "bytes belong to a file");
    m_crc = updated(m_crc, data, size);
    m_inFile += size;
    m_written += size;
    m_isFull = m_written > m_outputLimit;
    return m_isFull ? Status::DiskFull : Status::Ok;
}

// Searches, because files do not come in the archive's order. The sink's memory is limited, so it
// keeps no table.
std::uint32_t CheckingSink::indexOf(const std::u16string &path) const
{
    const CSzArEx &tables = m_archive.tables();
    for (std::uint32_t i = 0; i < tables.NumFiles; ++i) {
        std::u16string name(SzArEx_GetFileNameUtf16(&tables, i, nullptr), u'\0');
        SzArEx_GetFileNameUtf16(&tables, i, reinterpret_cast<UInt16 *>(name.data()));
        name.pop_back();
        if (name == path) {
            return i;
        }
    }
    require(false, "what is unpacked is in the archive");
    return 0;
}

Status CheckingSink::endFile(const Entry &file)
{
    require(m_isInFile && !m_isFull && pathOf(file) == m_path,
            "the file that ends is the open one");
    require(m_inFile == file.size, "a file has its size");
    if (file.size != 0) {
        const CSzBitUi32s &sums = m_archive.tables().CRCs;
        const std::uint32_t index = indexOf(m_path);
        require(SzBitWithVals_Check(&sums, index) && sums.Vals[index] == ~m_crc,
                "a file has its check sum");
    }
    m_isInFile = false;
    return Status::Ok;
}

Status CheckingSink::finishFolder(const Entry &folder)
{
    require(!m_isInFile && m_entries == m_archive.entryCount(), "folders are finished at the end");
    require(!m_folders.empty() && m_folders.back() == pathOf(folder),
            "folders are finished in the other order");
    m_folders.pop_back();
    return Status::Ok;
}

void CheckingSink::checkEnd(Status status) const
{
    require((status == Status::DiskFull) == m_isFull, "a full disk ends the unpacking");
    require(status != Status::UnsafeName, "names are looked at before anything is unpacked");
    if (status == Status::Ok) {
        require(m_hasBegun && !m_isInFile && m_folders.empty()
                    && m_entries == m_archive.entryCount() && m_written == m_totalBytes,
                "success means that everything was unpacked");
    }
}
