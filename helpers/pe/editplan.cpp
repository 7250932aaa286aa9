// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/editplan.h"

#include <algorithm>
#include <optional>

namespace pe {

namespace {

constexpr std::uint64_t pageSize = 4096;
constexpr std::uint32_t addressLimit = 0x7fff0000U;
constexpr std::uint32_t readableData = 0x40000040U; // IMAGE_SCN_CNT_INITIALIZED_DATA, _MEM_READ

// IMAGE_DEBUG_DIRECTORY: its size, and where SizeOfData and PointerToRawData lie in it.
constexpr std::size_t debugEntrySize = 28;
constexpr std::size_t debugDataSize = 16;
constexpr std::size_t debugDataPointer = 24;
constexpr std::size_t maxDebugEntries = 64; // far above what linkers write

bool isWithinPage(std::uint64_t offset, std::uint64_t length)
{
    return offset / pageSize == (offset + length - 1) / pageSize;
}

bool isResourceSection(const Section &section)
{
    return section.name.starts_with(".rsrc");
}

// Whether the section holds the resources and nothing else, so that bytes that the tree does not
// use are free. Packers and linkers that merge sections keep other things there.
bool isSectionOfTree(const PeHeaders &headers, const ResourceTree &tree)
{
    const Section &section = headers.sections()[tree.section];
    if (!isResourceSection(section) || section.virtualAddress != tree.rootRva
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

// Whether the section at `index` is the last one and holds base relocations alone: the only
// reference to it is its data directory, so it can be given another address.
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

std::uint32_t lengthInFile(const PeHeaders &headers, const ResourceTree &tree)
{
    return static_cast<std::uint32_t>(headers.sections()[tree.section].rawEnd() - tree.rootOffset);
}

// Makes the section and the data directory cover what was laid out.
void coverLayout(PeHeaders &headers, const ResourceTree &tree, std::uint32_t usedEnd)
{
    Section section = headers.sections()[tree.section];
    const std::uint32_t end = tree.rootRva - section.virtualAddress + usedEnd;
    if (end > section.extent()) {
        section.virtualSize = end;
        headers.setSection(tree.section, section);
    }
    const DataDirectory old = headers.directory(Directory::Resource);
    headers.setDirectory(Directory::Resource, {tree.rootRva, std::max(old.size, usedEnd)});
}

EditPlan makePlan(Layout &&layout, PeHeaders headers)
{
    EditPlan plan;
    plan.content = std::move(layout.content);
    plan.root = std::move(layout.root);
    plan.headers = std::move(headers);
    return plan;
}

std::optional<EditPlan> planInUnusedBytes(const PeHeaders &headers, ResourceTree &tree,
                                          const OldPlace &old)
{
    if (tree.rootOffset < headers.bytes().size()) {
        return std::nullopt; // a root inside the headers cannot be written apart from them
    }
    LayoutRoom room{tree.rootRva, tree.rootOffset, old.live, 0, 0, true};
    room.length = std::min(lengthInFile(headers, tree), addressRoom(headers, tree));
    room.maxLength = room.length;
    const std::uint32_t newRootSize = tree.root.tableSize();
    if (!isSectionOfTree(headers, tree)) {
        room.taken = {{old.rootSize, room.length}};
    }
    if (old.rootSize > newRootSize) {
        room.taken.push_back({newRootSize, old.rootSize});
    }
    auto layout = layOut(tree, room);
    if (!layout) {
        return std::nullopt;
    }
    EditPlan plan = makePlan(std::move(*layout), headers);
    // A root that merely got shorter says nothing about where the section's data end.
    if (!plan.content.empty()) {
        coverLayout(plan.headers, tree, layout->usedEnd);
    }
    plan.inPlace = isWithinPage(plan.root.offset, plan.root.bytes.size())
        && isWithinPage(0, headers.bytes().size());
    return plan;
}

// Inserting in the middle of another section's bytes would tear it.
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

std::optional<EditPlan> planInSection(const PeHeaders &headers, ResourceTree &tree)
{
    if (!isSectionOfTree(headers, tree)) {
        return std::nullopt;
    }
    const std::size_t next = tree.section + 1;
    const bool relocMoves = isMovableReloc(headers, next);
    LayoutRoom room{tree.rootRva, tree.rootOffset, {}, 0, 0, false};
    room.maxLength = relocMoves ? bytesBelow(addressLimit, tree.rootRva)
                                : addressRoom(headers, tree);
    room.length = std::min(lengthInFile(headers, tree), room.maxLength);
    const std::uint64_t sectionEnd = headers.sections()[tree.section].rawEnd();
    if (!canInsertAt(headers, sectionEnd)) {
        room.maxLength = room.length;
    }
    room.taken = dataRanges(tree, tree.rootRva, room.length);
    auto layout = layOut(tree, room);
    if (!layout) {
        return std::nullopt;
    }
    const std::uint32_t usedEnd = layout->usedEnd;
    EditPlan plan = makePlan(std::move(*layout), headers);
    if (usedEnd > room.length) {
        plan.insertAt = sectionEnd;
        plan.insertLength = alignUp(usedEnd - room.length, growthUnit(headers));
        plan.headers.shiftFileOffsets(plan.insertAt, plan.insertLength);
        Section grown = plan.headers.sections()[tree.section];
        // 0 would stand for the raw size, which exceeds what is used.
        grown.virtualSize = grown.extent();
        grown.rawSize += static_cast<std::uint32_t>(plan.insertLength);
        plan.headers.setSection(tree.section, grown);
    }
    coverLayout(plan.headers, tree, usedEnd);
    const std::uint64_t end = plan.headers.sections()[tree.section].virtualEnd();
    if (relocMoves && end > headers.sections()[next].virtualAddress) {
        Section reloc = plan.headers.sections()[next];
        reloc.virtualAddress = static_cast<std::uint32_t>(alignUp(end, headers.sectionAlignment()));
        plan.headers.setSection(next, reloc);
        plan.headers.setDirectory(Directory::BaseRelocation,
                                  {reloc.virtualAddress,
                                   headers.directory(Directory::BaseRelocation).size});
    }
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
    LayoutRoom room{section.virtualAddress, offset, {}, 0, 0, false};
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

// The debug directory, if its size is right: whole entries, all of them in one section's bytes.
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

// Debug entries name file offsets, too. An entry whose data do not lie in the file is left alone: what
// it names is not known.
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
        plan.content.push_back(
            {position + (position >= plan.insertAt ? plan.insertLength : 0), std::move(moved)});
    }
    return Done{};
}

} // namespace

OldPlace OldPlace::of(const ResourceTree &tree)
{
    OldPlace place;
    place.rootSize = tree.root.tableSize();
    place.live = dataRanges(tree, tree.rootRva, addressLimit);
    if (!tree.tables.empty()) {
        place.live.insert(place.live.end(), tree.tables.begin() + 1, tree.tables.end());
    }
    return place;
}

Result<EditPlan> planEdit(const File &file, const PeHeaders &headers, ResourceTree &tree,
                          const OldPlace &old)
{
    std::optional<EditPlan> found;
    if (tree.rootRva != 0) {
        found = planInUnusedBytes(headers, tree, old);
        if (!found) {
            found = planInSection(headers, tree);
        }
    }
    Result<EditPlan> plan = found ? Result(std::move(*found)) : planNewSection(headers, tree);
    if (plan.hasError()) {
        return plan;
    }
    if (plan.value().insertLength != 0) {
        if (plan.value().insertAt + plan.value().insertLength > 0xffffffffU) {
            return Error{ErrorKind::NoRoom, "the image would exceed 4 GiB"};
        }
        if (auto shifted = shiftDebugOffsets(file, headers, plan.value()); shifted.hasError()) {
            return shifted.error();
        }
    }
    return plan;
}

} // namespace pe
