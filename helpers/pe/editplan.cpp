// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/editplan.h"

#include <algorithm>
#include <optional>

namespace pe {

namespace {

constexpr std::uint64_t pageSize = 4096;
constexpr std::uint32_t addressLimit = 0x7fff0000U; // the address space of a 32-bit program
constexpr std::uint32_t readableData = 0x40000040U; // IMAGE_SCN_CNT_INITIALIZED_DATA, _MEM_READ

// IMAGE_DEBUG_DIRECTORY: its size, and where SizeOfData and PointerToRawData lie in it.
constexpr std::size_t debugEntrySize = 28;
constexpr std::size_t debugDataSize = 16;
constexpr std::size_t debugDataPointer = 24;
constexpr std::size_t maxDebugEntries = 64; // far above what linkers write

// True if the section holds the resources and nothing else, so that all bytes that the tree does not
// use are free. Packers, and linkers that merge sections, keep other things there.
bool isSectionOfTree(const PeHeaders &headers, const ResourceTree &tree)
{
    const Section &section = headers.sections()[tree.section];
    if (!section.name.starts_with(".rsrc") || section.virtualAddress != tree.rootRva
        || section.holdsRva(headers.entryPoint())) {
        return false;
    }
    for (std::size_t i = 0; i < headers.directoryCount(); ++i) {
        const bool isRva = i != static_cast<std::size_t>(Directory::Resource)
            && i != static_cast<std::size_t>(Directory::Security);
        if (isRva && section.holdsRva(headers.directory(i).address)) {
            return false;
        }
    }
    for (std::size_t i = 0; i < headers.sections().size(); ++i) {
        const Section &other = headers.sections()[i];
        if (i != tree.section && other.hasRawData() && other.rawPointer < section.rawEnd()
            && section.rawPointer < other.rawEnd()) {
            return false;
        }
    }
    return section.rawPointer >= headers.sizeOfHeaders();
}

// True if the section at `index` is the last one and holds base relocations only. Nothing but its data
// directory refers to it then, so its address may change.
bool isMovableReloc(const PeHeaders &headers, std::size_t index)
{
    const auto &sections = headers.sections();
    if (index + 1 != sections.size() || sections[index].name != ".reloc"
        || headers.directory(Directory::BaseRelocation).address != sections[index].virtualAddress) {
        return false;
    }
    for (std::size_t i = 0; i < headers.directoryCount(); ++i) {
        if (i != static_cast<std::size_t>(Directory::BaseRelocation)
            && i != static_cast<std::size_t>(Directory::Security)
            && sections[index].holdsRva(headers.directory(i).address)) {
            return false;
        }
    }
    return !sections[index].holdsRva(headers.entryPoint());
}

std::uint32_t bytesBelow(std::uint32_t limit, std::uint32_t rva)
{
    return limit > rva ? limit - rva : 0;
}

// Bytes from the root to the next section's address.
std::uint32_t addressRoom(const PeHeaders &headers, const ResourceTree &tree)
{
    const std::size_t next = tree.section + 1;
    const bool isLast = next >= headers.sections().size();
    return bytesBelow(isLast ? addressLimit : headers.sections()[next].virtualAddress,
                      tree.rootRva);
}

EditPlan makePlan(Layout &&layout, const PeHeaders &headers)
{
    EditPlan plan;
    plan.patches = std::move(layout.patches);
    plan.headers = headers;
    return plan;
}

// False in the middle of a section: to insert there would tear its bytes apart.
bool canInsertAt(const PeHeaders &headers, std::uint64_t at)
{
    return std::none_of(headers.sections().begin(), headers.sections().end(),
                        [&](const auto &section) {
                            return section.hasRawData() && section.rawPointer < at
                                && at < section.rawEnd();
                        });
}

std::uint64_t growthUnit(const PeHeaders &headers)
{
    // Whole pages, so that file systems that can share blocks between files still can.
    return std::max<std::uint64_t>(headers.fileAlignment(), pageSize);
}

// The room of the tree's section: all bytes but those of resources that stay, and what the section can
// grow by.
LayoutRoom roomInSection(const PeHeaders &headers, const ResourceTree &tree)
{
    const bool relocMoves = isMovableReloc(headers, tree.section + 1);
    const std::uint64_t sectionEnd = headers.sections()[tree.section].rawEnd();
    LayoutRoom room{tree.rootRva, tree.rootOffset, {}, 0, 0};
    room.maxLength = relocMoves ? bytesBelow(addressLimit, tree.rootRva)
                                : addressRoom(headers, tree);
    room.length
        = std::min(static_cast<std::uint32_t>(sectionEnd - tree.rootOffset), room.maxLength);
    if (!canInsertAt(headers, sectionEnd)) {
        room.maxLength = room.length;
    }
    room.taken = dataRanges(tree, tree.rootRva, room.length);
    return room;
}

// Makes the section longer in the file.
void growSection(EditPlan &plan, const ResourceTree &tree, std::uint32_t missing)
{
    PeHeaders &headers = plan.headers;
    plan.insertAt = headers.sections()[tree.section].rawEnd();
    plan.insertLength = alignUp(missing, growthUnit(headers));
    headers.shiftFileOffsets(plan.insertAt, plan.insertLength);
    Section grown = headers.sections()[tree.section];
    // A virtual size of 0 would stand for the raw size, which is now more than what is used.
    grown.virtualSize = grown.extent();
    grown.rawSize += static_cast<std::uint32_t>(plan.insertLength);
    headers.setSection(tree.section, grown);
}

// Makes the section and the data directory cover the tree, and moves a .reloc section out of the way.
void coverTree(PeHeaders &headers, const ResourceTree &tree, std::uint32_t usedEnd)
{
    Section section = headers.sections()[tree.section];
    const std::uint32_t end = tree.rootRva - section.virtualAddress + usedEnd;
    if (end > section.extent()) {
        section.virtualSize = end;
        headers.setSection(tree.section, section);
    }
    const DataDirectory old = headers.directory(Directory::Resource);
    headers.setDirectory(Directory::Resource, {tree.rootRva, std::max(old.size, usedEnd)});

    const std::size_t next = tree.section + 1;
    if (next < headers.sections().size()
        && section.virtualEnd() > headers.sections()[next].virtualAddress) {
        Section reloc = headers.sections()[next];
        reloc.virtualAddress
            = static_cast<std::uint32_t>(alignUp(section.virtualEnd(), headers.sectionAlignment()));
        headers.setSection(next, reloc);
        headers.setDirectory(Directory::BaseRelocation,
                             {reloc.virtualAddress,
                              headers.directory(Directory::BaseRelocation).size});
    }
}

std::optional<EditPlan> planInSection(const PeHeaders &headers, ResourceTree &tree)
{
    if (tree.rootRva == 0 || !isSectionOfTree(headers, tree)) {
        return std::nullopt;
    }
    const LayoutRoom room = roomInSection(headers, tree);
    auto layout = layOut(tree, room);
    if (!layout) {
        return std::nullopt;
    }
    const std::uint32_t usedEnd = layout->usedEnd;
    EditPlan plan = makePlan(std::move(*layout), headers);
    if (usedEnd > room.length) {
        growSection(plan, tree, usedEnd - room.length);
    }
    coverTree(plan.headers, tree, usedEnd);
    return plan;
}

std::string freeSectionName(const PeHeaders &headers)
{
    const auto isTaken = [&](const std::string &name) {
        return std::any_of(headers.sections().begin(), headers.sections().end(),
                           [&](const Section &section) { return section.name == name; });
    };
    std::string name = ".rsrc";
    for (int number = 1; isTaken(name); ++number) {
        name = ".rsrc" + std::to_string(number);
    }
    return name;
}

Result<EditPlan> planNewSection(const PeHeaders &headers, ResourceTree &tree)
{
    if (headers.directoryCount() <= static_cast<std::size_t>(Directory::Resource)
        || !headers.hasRoomForSection()) {
        return Error{ErrorKind::NoRoom, "the header has no room for another section"};
    }
    std::uint64_t address = headers.sizeOfHeaders();
    for (const Section &section : headers.sections()) {
        address = std::max(address, section.virtualEnd());
    }
    Section section;
    section.name = freeSectionName(headers);
    section.characteristics = readableData;
    section.virtualAddress
        = static_cast<std::uint32_t>(alignUp(address, headers.sectionAlignment()));
    const std::uint64_t imageEnd = headers.imageEnd();
    const std::uint64_t offset = alignUp(imageEnd, headers.fileAlignment());
    LayoutRoom room{section.virtualAddress, offset, {}, 0, 0};
    room.maxLength = bytesBelow(addressLimit, section.virtualAddress);
    auto layout = layOut(tree, room);
    if (!layout) {
        return Error{ErrorKind::NoRoom, "the address space has no room for another section"};
    }
    section.rawPointer = static_cast<std::uint32_t>(offset);
    section.rawSize = static_cast<std::uint32_t>(alignUp(layout->usedEnd, growthUnit(headers)));
    section.virtualSize = layout->usedEnd;
    const std::uint32_t usedEnd = layout->usedEnd;
    EditPlan plan = makePlan(std::move(*layout), headers);
    plan.insertAt = imageEnd;
    plan.insertLength = offset - imageEnd + section.rawSize;
    plan.headers.shiftFileOffsets(plan.insertAt, plan.insertLength);
    plan.headers.appendSection(section);
    plan.headers.setDirectory(Directory::Resource, {section.virtualAddress, usedEnd});
    return plan;
}

// The debug directory; empty if its size is wrong: it must have whole entries and lie in one section.
Result<Bytes> readDebugDirectory(const File &file, const PeHeaders &headers)
{
    const DataDirectory debug = headers.directory(Directory::Debug);
    const auto offset = headers.offsetOf(debug.address);
    if (debug.address == 0 || !offset || debug.size % debugEntrySize != 0
        || debug.size / debugEntrySize > maxDebugEntries) {
        return Bytes();
    }
    const Section &section = headers.sections()[*headers.sectionOf(debug.address)];
    if (!fits(*offset, debug.size, section.rawEnd())
        || std::uint64_t{debug.address} + debug.size > section.virtualEnd()) {
        return Bytes();
    }
    return file.readAt(*offset, std::size_t{debug.size});
}

// Debug entries contain file offsets, too. An entry is not changed if its data do not lie in the file:
// then the number may be something else.
Result<Done> shiftDebugOffsets(const File &file, const PeHeaders &headers, EditPlan &plan)
{
    auto directory = readDebugDirectory(file, headers);
    if (directory.hasError()) {
        return directory.error();
    }
    const Bytes &entries = directory.value();
    for (std::size_t begin = 0; begin < entries.size(); begin += debugEntrySize) {
        const std::uint32_t size = read32(entries, begin + debugDataSize);
        const std::uint32_t pointer = read32(entries, begin + debugDataPointer);
        if (pointer == 0 || pointer < plan.insertAt || !fits(pointer, size, file.size())) {
            continue;
        }
        const std::uint64_t position
            = *headers.offsetOf(headers.directory(Directory::Debug).address) + begin
            + debugDataPointer;
        Bytes moved(4);
        write32(moved, 0, static_cast<std::uint32_t>(pointer + plan.insertLength));
        plan.patches.push_back(
            {position + (position >= plan.insertAt ? plan.insertLength : 0), std::move(moved)});
    }
    return Done{};
}

} // namespace

Result<EditPlan> planEdit(const File &file, const PeHeaders &headers, ResourceTree &tree)
{
    auto inSection = planInSection(headers, tree);
    auto plan = inSection ? Result(std::move(*inSection)) : planNewSection(headers, tree);
    if (plan.hasError()) {
        return plan;
    }
    plan.value().headers.clearCheckSum();
    if (plan.value().insertAt + plan.value().insertLength > 0xffffffffU) {
        return Error{ErrorKind::NoRoom, "the image would exceed 4 GiB"};
    }
    if (plan.value().insertLength != 0) {
        if (auto shifted = shiftDebugOffsets(file, headers, plan.value()); shifted.hasError()) {
            return shifted.error();
        }
    }
    return plan;
}

} // namespace pe
