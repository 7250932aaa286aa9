// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/fuzz/untouchedbytes.h"

#include <algorithm>

using namespace pe;

namespace {

bool overlapInFile(const Section &left, const Section &right)
{
    return left.hasRawData() && right.hasRawData() && left.rawPointer < right.rawEnd()
        && right.rawPointer < left.rawEnd();
}

// Returns true if the section begins with the resource directory and contains nothing else that is
// known.
bool holdsResourcesOnly(const PeHeaders &headers, std::size_t index)
{
    const Section &section = headers.sections()[index];
    bool alone = section.name.starts_with(".rsrc") && section.rawPointer >= headers.sizeOfHeaders()
        && section.virtualAddress == headers.directory(Directory::Resource).address
        && !section.holdsRva(headers.entryPoint());
    for (std::size_t i = 0; i < headers.directoryCount(); ++i) {
        const bool other = i != static_cast<std::size_t>(Directory::Resource)
            && i != static_cast<std::size_t>(Directory::Security);
        alone = alone && !(other && section.holdsRva(headers.directory(i).address));
    }
    for (std::size_t i = 0; i < headers.sections().size(); ++i) {
        alone = alone && (i == index || !overlapInFile(section, headers.sections()[i]));
    }
    return alone;
}

} // namespace

std::optional<UntouchedBytes> UntouchedBytes::of(const File &file)
{
    const auto headers = PeHeaders::read(file);
    if (headers.hasError() || headers.value().checkForEditing(file.size()).hasError()) {
        return std::nullopt;
    }
    UntouchedBytes untouched;
    untouched.m_content = file.readAt(0, static_cast<std::size_t>(file.size())).value();
    untouched.m_mayChange.resize(untouched.m_content.size());
    untouched.m_ends.push_back(headers.value().imageEnd());
    untouched.mayChange(0, headers.value().bytes().size());
    untouched.findResourceSection(headers.value());
    untouched.findDebugPointers(headers.value());
    return untouched;
}

void UntouchedBytes::mayChange(std::uint64_t begin, std::uint64_t end)
{
    std::fill(m_mayChange.begin() + static_cast<std::ptrdiff_t>(begin),
              m_mayChange.begin() + static_cast<std::ptrdiff_t>(end), true);
}

void UntouchedBytes::findResourceSection(const PeHeaders &headers)
{
    const auto index = headers.sectionOf(headers.directory(Directory::Resource).address);
    if (index && holdsResourcesOnly(headers, *index)) {
        const Section &section = headers.sections()[*index];
        mayChange(section.rawPointer, section.rawEnd());
        m_ends.push_back(section.rawEnd());
    }
}

void UntouchedBytes::findDebugPointers(const PeHeaders &headers)
{
    const DataDirectory debug = headers.directory(Directory::Debug);
    const auto offset = headers.offsetOf(debug.address);
    if (!offset || debug.size == 0 || debug.size % 28 != 0) {
        return;
    }
    const Section &section = headers.sections()[*headers.sectionOf(debug.address)];
    if (*offset + debug.size > section.rawEnd()) {
        return;
    }
    for (std::uint64_t entry = *offset; entry < *offset + debug.size; entry += 28) {
        const ByteView bytes = ByteView(m_content).subspan(static_cast<std::size_t>(entry), 28);
        if (std::uint64_t{read32(bytes, 16)} + read32(bytes, 24) <= m_content.size()) {
            mayChange(entry + 24, entry + 28);
        }
    }
}

bool UntouchedBytes::areIn(const Bytes &edited) const
{
    return edited.size() >= m_content.size()
        && std::any_of(m_ends.begin(), m_ends.end(),
                       [&](std::uint64_t end) { return areIn(edited, end); });
}

bool UntouchedBytes::areIn(const Bytes &edited, std::uint64_t insertAt) const
{
    const std::size_t growth = edited.size() - m_content.size();
    for (std::size_t i = 0; i < m_content.size(); ++i) {
        if (!m_mayChange[i] && edited[i + (i >= insertAt ? growth : 0)] != m_content[i]) {
            return false;
        }
    }
    return true;
}
