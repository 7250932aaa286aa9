// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/bytes.h"
#include "helpers/pe/peheaders.h"

#include <cstdint>
#include <optional>
#include <vector>

// The bytes of a program that no edit of its resources may change: all but the headers, the section of
// the resources if nothing else lies in it, and the file offsets in the debug directory.
class UntouchedBytes
{
public:
    // Nothing if the file is no program that can be edited.
    static std::optional<UntouchedBytes> of(const pe::File &file);

    // True if the edited file has all these bytes, those after one place further on by the
    // number of bytes that the file has grown by.
    bool areIn(const pe::Bytes &edited) const;

private:
    void mayChange(std::uint64_t begin, std::uint64_t end);
    void findResourceSection(const pe::PeHeaders &headers);
    void findDebugPointers(const pe::PeHeaders &headers);
    bool areIn(const pe::Bytes &edited, std::uint64_t insertAt) const;

    pe::Bytes m_content;
    std::vector<bool> m_mayChange;
    std::vector<std::uint64_t> m_ends; // of the image and of the resource section
};
