// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/iconofprogram.h"

#include "helpers/pe/icofile.h"
#include "helpers/pe/resourcetree.h"

#include <utility>
#include <vector>

namespace pe {

namespace {

constexpr std::uint32_t maxImageSize = 16U << 20;
constexpr std::uint32_t imageHeaderSize = 40; // as much as describeIconImage() reads

const ResourceData *resourceOf(const ResourceTree &tree, std::uint32_t type)
{
    const ResourceEntry *entry = findEntry(tree.root, {std::nullopt, type});
    return entry != nullptr ? firstData(*entry) : nullptr;
}

const ResourceData *imageOf(const ResourceTree &tree, std::uint32_t id)
{
    const ResourceEntry *images = findEntry(tree.root, {std::nullopt, iconType});
    if (images == nullptr || !images->directory) {
        return nullptr;
    }
    const ResourceEntry *image = findEntry(*images->directory, {std::nullopt, id});
    return image != nullptr ? firstData(*image) : nullptr;
}

bool isBetter(const IconImage &image, const IconImage &than)
{
    const auto rank = [](const IconImage &of) {
        return std::pair(of.width * of.height, of.bitCount);
    };
    return rank(image) > rank(than);
}

// The best image of a group, or null if none can be read. Reads only the first bytes of each: in a
// hostile file all images can be the same long range of bytes.
const ResourceData *bestImage(const ResourceTree &tree, const File &file, const PeHeaders &headers,
                              ByteView group)
{
    const ResourceData *best = nullptr;
    IconImage measures;
    for (const std::uint16_t id : imageIdsOfGroup(group)) {
        const ResourceData *data = imageOf(tree, id);
        if (data == nullptr) {
            continue;
        }
        const auto start = readResourceStart(file, headers, *data, maxImageSize, imageHeaderSize);
        if (start.hasError()) {
            continue;
        }
        const auto image = describeIconImage(start.value());
        if (!image.hasError() && isBetter(image.value(), measures)) {
            measures = image.value();
            best = data;
        }
    }
    return best;
}

// A program with an icon group.
struct IconProgram
{
    File file;
    PeHeaders headers;
    ResourceTree tree;
    Bytes group; // the first group's content
};

Result<std::optional<IconProgram>> openIconProgram(const NativePath &program)
{
    auto file = File::open(program, File::Access::Read);
    if (file.hasError()) {
        return file.error();
    }
    auto headers = PeHeaders::read(file.value());
    if (headers.hasError()) {
        return headers.error();
    }
    auto tree = readResourceTree(file.value(), headers.value());
    if (tree.hasError()) {
        return tree.error();
    }
    const ResourceData *group = tree.value() ? resourceOf(*tree.value(), groupIconType) : nullptr;
    if (group == nullptr) {
        return std::optional<IconProgram>();
    }
    auto content = readResource(file.value(), headers.value(), *group, maxIconGroupSize);
    if (content.hasError()) {
        return std::optional<IconProgram>();
    }
    return std::optional(IconProgram{std::move(file.value()), std::move(headers.value()),
                                     std::move(*tree.value()), std::move(content.value())});
}

// The images of the group; none if one of them is missing or damaged, or if they are too large
// together: in a hostile file all images can be the same long range of bytes.
std::vector<Bytes> imagesOf(const IconProgram &program)
{
    std::vector<Bytes> images;
    std::uint64_t size = 0;
    for (const std::uint16_t id : imageIdsOfGroup(program.group)) {
        const ResourceData *data = imageOf(program.tree, id);
        size += data != nullptr ? data->size : 0;
        if (data == nullptr || size > maxIcoFileSize) {
            return {};
        }
        auto content = readResource(program.file, program.headers, *data, maxImageSize);
        if (content.hasError()) {
            return {};
        }
        images.push_back(std::move(content.value()));
    }
    return images;
}

} // namespace

Result<std::optional<Bytes>> iconOfProgram(const NativePath &program)
{
    const auto opened = openIconProgram(program);
    if (opened.hasError()) {
        return opened.error();
    }
    if (!opened.value()) {
        return std::optional<Bytes>();
    }
    const IconProgram &found = *opened.value();
    const ResourceData *best = bestImage(found.tree, found.file, found.headers, found.group);
    if (best == nullptr) {
        return std::optional<Bytes>();
    }
    const auto bytes = readResource(found.file, found.headers, *best, maxImageSize);
    if (bytes.hasError()) {
        return bytes.error();
    }
    const auto image = describeIconImage(bytes.value());
    return image.hasError() ? std::optional<Bytes>() : icoFileOf({image.value()});
}

Result<std::optional<Bytes>> iconGroupOfProgram(const NativePath &program)
{
    const auto opened = openIconProgram(program);
    if (opened.hasError()) {
        return opened.error();
    }
    const std::vector<Bytes> contents = opened.value() ? imagesOf(*opened.value())
                                                       : std::vector<Bytes>();
    if (contents.empty() || contents.size() != read16(opened.value()->group, 4)) {
        return std::optional<Bytes>();
    }
    std::vector<IconImage> images;
    for (const Bytes &content : contents) {
        const auto image = describeIconImage(content);
        if (image.hasError()) {
            return std::optional<Bytes>();
        }
        images.push_back(image.value());
    }
    Bytes icon = icoFileOf(images);
    return icon.size() > maxIcoFileSize ? std::optional<Bytes>() : std::move(icon);
}

} // namespace pe
