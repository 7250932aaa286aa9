// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/unpacking/unpacker.h"

#include <string>
#include <vector>

// Discards the unpacked files. Ends the fuzzer if the unpacker breaks a promise about the order of
// calls, names, sizes or check sums.
class CheckingSink final : public sfx::UnpackSink
{
public:
    // The disk is full after `outputLimit` bytes.
    CheckingSink(const sfx::Archive &archive, std::uint64_t totalBytes, std::uint64_t outputLimit)
        : m_archive(archive)
        , m_totalBytes(totalBytes)
        , m_outputLimit(outputLimit)
    {
    }

    sfx::Status begin(std::uint64_t totalBytes, std::uint32_t entries) override;
    sfx::Status makeFolder(const sfx::Entry &folder) override;
    sfx::Status beginFile(const sfx::Entry &file) override;
    sfx::Status write(const std::uint8_t *data, std::size_t size) override;
    sfx::Status endFile(const sfx::Entry &file) override;
    sfx::Status finishFolder(const sfx::Entry &folder) override;

    // Call this after unpack(). Checks that the returned status fits the calls that came.
    void checkEnd(sfx::Status status) const;

private:
    void checkEntry(const sfx::Entry &entry);
    std::uint32_t indexOf(const std::u16string &path) const;

    const sfx::Archive &m_archive;
    std::uint64_t m_totalBytes;
    std::uint64_t m_outputLimit;
    std::uint64_t m_written = 0;
    std::uint64_t m_inFile = 0;
    std::uint32_t m_crc = 0;
    std::uint32_t m_entries = 0; // number of entries that have begun
    bool m_hasBegun = false;
    bool m_isInFile = false;
    bool m_isFull = false;
    std::u16string m_path;                 // of the open file
    std::vector<std::u16string> m_folders; // begun and not finished
};

// Makes ASCII letters capital.
void upperCaseAscii(char16_t *text, std::size_t size);
