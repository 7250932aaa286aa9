// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tools/finish-program/finishing.h"

#include "helpers/pe/peheaders.h"
#include "tools/finish-program/loadconfig.h"

#include <algorithm>
#include <bit>
#include <optional>
#include <utility>

namespace {

constexpr std::uint16_t removableRunFromSwap = 0x400; // IMAGE_FILE_REMOVABLE_RUN_FROM_SWAP
constexpr std::uint16_t netRunFromSwap = 0x800;       // IMAGE_FILE_NET_RUN_FROM_SWAP

using LoadConfigBytes = std::array<std::uint8_t, sizeof(LoadConfig)>;

LoadConfigBytes bytesOf(const LoadConfig &config)
{
    return std::bit_cast<LoadConfigBytes>(config);
}

// The file offset of the load configuration; nothing if it does not occur exactly once.
std::optional<std::uint64_t> findLoadConfig(pe::ByteView content)
{
    const auto wanted = bytesOf({.timeStamp = unfinishedTimeStamp});
    const auto found = std::search(content.begin(), content.end(), wanted.begin(), wanted.end());
    if (found == content.end()
        || std::search(found + 1, content.end(), wanted.begin(), wanted.end()) != content.end()) {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(found - content.begin());
}

std::optional<std::uint32_t> rvaOf(const pe::PeHeaders &headers, std::uint64_t offset)
{
    for (const pe::Section &section : headers.sections()) {
        if (section.hasRawData() && offset >= section.rawPointer
            && pe::fits(offset - section.rawPointer, sizeof(LoadConfig),
                        std::min(section.rawSize, section.extent()))) {
            return section.virtualAddress + static_cast<std::uint32_t>(offset - section.rawPointer);
        }
    }
    return std::nullopt;
}

// The header's sum: 16-bit words with the carry added, then the size (IMAGEHLP's
// CheckSumMappedFile). The header's own field must be 0.
std::uint32_t checkSumOf(pe::ByteView content)
{
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < content.size(); i += 2) {
        const bool isWhole = i + 1 < content.size();
        sum += isWhole ? std::uint32_t{pe::read16(content, i)} : std::uint32_t{content[i]};
        sum = (sum & 0xffff) + (sum >> 16);
    }
    return sum + static_cast<std::uint32_t>(content.size());
}

// Crash reports and symbol stores identify a program by its stamp and size, so different programs
// get different stamps, and the same source still gives the same file. The result is a time between
// 2004 and 2021: scanners distrust programs without a time, or with one in the future.
std::uint32_t stampOf(pe::ByteView content)
{
    std::uint64_t hash = 0xcbf29ce484222325U; // FNV-1a
    for (const std::uint8_t byte : content) {
        hash = (hash ^ byte) * 0x100000001b3U;
    }
    return 0x40000000U | static_cast<std::uint32_t>((hash ^ (hash >> 32)) & 0x1fffffffU);
}

void put(pe::Bytes &content, std::uint64_t offset, pe::ByteView bytes)
{
    std::copy(bytes.begin(), bytes.end(), content.begin() + static_cast<std::ptrdiff_t>(offset));
}

// Changes the headers so that they fit `content`, which has the finished load configuration.
void completeHeaders(pe::PeHeaders &headers, std::uint32_t address, pe::Bytes content)
{
    headers.setDirectory(pe::Directory::LoadConfig, {address, sizeof(LoadConfig)});
    headers.addCharacteristics(removableRunFromSwap | netRunFromSwap);
    headers.setTimeStamp(0);
    headers.clearCheckSum();
    put(content, 0, headers.bytes());
    headers.setTimeStamp(stampOf(content));
    put(content, 0, headers.bytes());
    headers.setCheckSum(checkSumOf(content));
}

} // namespace

pe::Result<pe::Done> finishProgram(pe::File &file)
{
    auto read = pe::PeHeaders::read(file);
    if (read.hasError()) {
        return read.error();
    }
    auto content = file.readAt(0, static_cast<std::size_t>(file.size()));
    if (content.hasError()) {
        return content.error();
    }
    pe::PeHeaders &headers = read.value();
    const auto offset = findLoadConfig(content.value());
    const auto address = offset ? rvaOf(headers, *offset) : std::nullopt;
    if (!address
        || headers.directoryCount() <= static_cast<std::size_t>(pe::Directory::LoadConfig)) {
        return pe::Error{pe::ErrorKind::Damaged,
                         "the load configuration is not in it exactly once; was the program linked "
                         "with loadconfig.cpp?"};
    }
    const LoadConfigBytes finished = bytesOf(LoadConfig());
    put(content.value(), *offset, finished);
    completeHeaders(headers, *address, std::move(content.value()));
    if (auto written = file.writeAt(*offset, finished); written.hasError()) {
        return written;
    }
    return file.writeAt(0, headers.bytes());
}
