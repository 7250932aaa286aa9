// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/sevenzip.h"

namespace kit {

namespace {

// The ids of properties that are used here.
enum Id : char {
    End = 0x00,
    Header = 0x01,
    MainStreams = 0x04,
    Files = 0x05,
    PackInfo = 0x06,
    UnpackInfo = 0x07,
    SubStreams = 0x08,
    Size = 0x09,
    Sums = 0x0a,
    Folder = 0x0b,
    UnpackSize = 0x0c,
    StreamCount = 0x0d,
    Names = 0x11,
    Attributes = 0x15,
};

std::uint32_t checkSum(const std::string &bytes)
{
    std::uint32_t sum = 0xffffffff;
    for (const char byte : bytes) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xedb88320 : 0);
        }
    }
    return ~sum;
}

std::string littleEndian(std::uint64_t value, int size)
{
    std::string bytes;
    for (int i = 0; i < size; ++i) {
        bytes += static_cast<char>(value >> (8 * i));
    }
    return bytes;
}

// The leading one bits of the first byte count the bytes that follow. This is the longest form,
// with eight more bytes, which is allowed for every value.
std::string number(std::uint64_t value)
{
    return value < 0x80 ? std::string(1, static_cast<char>(value))
                        : '\xff' + littleEndian(value, 8);
}

std::string streamsOf(const std::vector<Entry> &entries, std::uint64_t total)
{
    std::string sizes;
    std::string sums;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i + 1 < entries.size()) {
            sizes += number(entries[i].content.size());
        }
        sums += littleEndian(checkSum(entries[i].content), 4);
    }
    std::string text;
    text += {MainStreams, PackInfo, 0, 1, Size};
    text += number(total) + char(End);
    // One folder of one coder: its id has one byte, which is zero (Copy).
    text += {UnpackInfo, Folder, 1, 0, 1, 1, 0, UnpackSize};
    text += number(total) + char(End);
    text += {SubStreams, StreamCount};
    text += number(entries.size());
    if (!sizes.empty()) {
        text += char(Size) + sizes;
    }
    text += {Sums, 1};
    return text + sums + char(End) + char(End);
}

std::string filesOf(const std::vector<Entry> &entries)
{
    std::string names(1, '\0');   // they are in this header
    std::string attributes{1, 0}; // all files have some, in this header
    for (const Entry &entry : entries) {
        for (const wchar_t unit : entry.name) {
            names += littleEndian(unit, 2);
        }
        names += littleEndian(0, 2);
        attributes += littleEndian(entry.attributes, 4);
    }
    return char(Files) + number(entries.size()) + char(Names) + number(names.size()) + names
        + char(Attributes) + number(attributes.size()) + attributes + char(End);
}

} // namespace

std::string storedArchive(const std::vector<Entry> &entries)
{
    std::string packed;
    for (const Entry &entry : entries) {
        packed += entry.content;
    }
    const std::string header = char(Header) + streamsOf(entries, packed.size()) + filesOf(entries)
        + char(End);
    const std::string place = littleEndian(packed.size(), 8) + littleEndian(header.size(), 8)
        + littleEndian(checkSum(header), 4);
    const std::string signature("7z\xbc\xaf\x27\x1c\x00\x04", 8);
    return signature + littleEndian(checkSum(place), 4) + place + packed + header;
}

} // namespace kit
