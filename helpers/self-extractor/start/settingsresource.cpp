// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/settingsresource.h"

#include "helpers/self-extractor/base/littleendian.h"

#include <cstring>

namespace sfx {

namespace {

// PE format, "The .rsrc Section": three levels of tables, by type, by name, and by language. A table
// has a header and entries of 8 bytes, those with names first. Positions count from the first table.
constexpr std::size_t headerSize = 16;
constexpr std::size_t entrySize = 8;
constexpr std::uint32_t highBit = 0x80000000; // the entry has a name; it leads to another table
constexpr std::uint32_t rawDataType = 10;     // WinUser.h: RT_RCDATA

constexpr std::uint8_t settingsName[]
    = {8, 0, 'S', 0, 'E', 0, 'T', 0, 'T', 0, 'I', 0, 'N', 0, 'G', 0, 'S', 0};

class ResourceFinder
{
public:
    ResourceFinder(ByteSource &source, const PeImage &image) : m_source(source), m_image(image) {}

    // Sets `exists`, and the resource's address and size if it does.
    Status find(bool &exists);
    std::uint32_t address() const { return m_address; }
    std::uint32_t size() const { return m_size; }

private:
    // Reads bytes that will be at the address `rva` in memory.
    Status read(std::uint64_t rva, void *data, std::size_t size);
    // Reads the table that the last entry leads to.
    Status enter();
    bool isSettings(const std::uint8_t *entry);
    template <typename Matches>
    bool choose(Matches matches);

    ByteSource &m_source;
    const PeImage &m_image;
    Array<std::uint8_t> m_entries;
    std::uint32_t m_position = highBit; // of the chosen entry: at first, the first table
    std::uint32_t m_address = 0;
    std::uint32_t m_size = 0;
};

Status ResourceFinder::read(std::uint64_t rva, void *data, std::size_t size)
{
    std::uint64_t offset = 0;
    if (!m_image.find(rva, size, offset)) {
        return Status::Damaged;
    }
    return m_source.readAt(offset, data, size) ? Status::Ok : Status::ReadFailed;
}

Status ResourceFinder::enter()
{
    std::uint8_t header[headerSize];
    const std::uint64_t table = std::uint64_t{m_image.resources()} + (m_position & ~highBit);
    if ((m_position & highBit) == 0) {
        return Status::Damaged;
    }
    const Status status = read(table, header, headerSize);
    if (status != Status::Ok) {
        return status;
    }
    const std::size_t count = std::size_t{readU16(header + 12)} + readU16(header + 14);
    if (!m_entries.allocate(count * entrySize)) {
        return Status::NoMemory;
    }
    return read(table + headerSize, m_entries.data(), m_entries.size());
}

template <typename Matches>
bool ResourceFinder::choose(Matches matches)
{
    for (std::size_t i = 0; i < m_entries.size(); i += entrySize) {
        const std::uint8_t *entry = m_entries.data() + i;
        if (matches(entry)) {
            m_position = readU32(entry + 4);
            return true;
        }
    }
    return false;
}

// A name is its length and its units.
bool ResourceFinder::isSettings(const std::uint8_t *entry)
{
    std::uint8_t name[sizeof settingsName];
    const std::uint32_t position = readU32(entry);
    return (position & highBit) != 0
        && read(std::uint64_t{m_image.resources()} + (position & ~highBit), name, sizeof name)
        == Status::Ok
        && std::memcmp(name, settingsName, sizeof name) == 0;
}

Status ResourceFinder::find(bool &exists)
{
    exists = false;
    Status status = enter();
    if (status != Status::Ok
        || !choose([](const std::uint8_t *entry) { return readU32(entry) == rawDataType; })) {
        return status;
    }
    status = enter();
    if (status != Status::Ok
        || !choose([this](const std::uint8_t *entry) { return isSettings(entry); })) {
        return status;
    }
    status = enter();
    if (status != Status::Ok) {
        return status;
    }
    if (m_entries.size() != entrySize
        || !choose([](const std::uint8_t *entry) { return (readU32(entry + 4) & highBit) == 0; })) {
        return Status::Damaged;
    }
    std::uint8_t data[8];
    status = read(std::uint64_t{m_image.resources()} + m_position, data, sizeof data);
    if (status != Status::Ok) {
        return status;
    }
    m_address = readU32(data);
    m_size = readU32(data + 4);
    exists = true;
    return Status::Ok;
}

} // namespace

Status readSettings(ByteSource &source, const PeImage &image, Settings &settings)
{
    ResourceFinder finder(source, image);
    bool exists = false;
    if (image.resources() == 0) {
        return Status::Ok;
    }
    Status status = finder.find(exists);
    if (!exists) {
        return status;
    }
    std::uint64_t offset = 0;
    Array<char> text;
    if (finder.size() > maxSettingsSize || !image.find(finder.address(), finder.size(), offset)) {
        return Status::Damaged;
    }
    if (!text.allocate(finder.size())) {
        return Status::NoMemory;
    }
    if (!source.readAt(offset, text.data(), text.size())) {
        return Status::ReadFailed;
    }
    return parseSettings(text.data(), text.size(), settings);
}

} // namespace sfx
