// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/bytes.h"
#include "helpers/pe/peheaders.h"

#include <cstdint>
#include <optional>
#include <vector>

// The bytes of a program that an edit of its resources must not change: all except the headers, the
// section of the resources if nothing else lies in it, and the file offsets in the debug directory.
class UntouchedBytes
{
public:
    // Returns nothing if the file is not a program that can be edited.
    static std::optional<UntouchedBytes> of(const pe::File &file);

    // Returns true if the edited file has all these bytes. After one place, they are moved by the
    // number of bytes that the file has grown.
    bool areIn(const pe::Bytes &edited) const;

private:
    void mayChange(std::uint64_t begin, std::uint64_t end);
    void findResourceSection(const pe::PeHeaders &headers);
    void findDebugPointers(const pe::PeHeaders &headers);
    bool areIn(const pe::Bytes &edited, std::uint64_t insertAt) const;

    pe::Bytes m_content;
    std::vector<bool> m_mayChange;
    std::vector<std::uint64_t> m_ends; // ends of the image and of the resource section
};
