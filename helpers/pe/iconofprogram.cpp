// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/iconofprogram.h"

#include "helpers/pe/icofile.h"
#include "helpers/pe/resourcetree.h"

#include <utility>

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

} // namespace

Result<std::optional<Bytes>> iconOfProgram(const NativePath &program)
{
    const auto file = File::open(program, File::Access::Read);
    if (file.hasError()) {
        return file.error();
    }
    const auto headers = PeHeaders::read(file.value());
    if (headers.hasError()) {
        return headers.error();
    }
    const auto tree = readResourceTree(file.value(), headers.value());
    if (tree.hasError()) {
        return tree.error();
    }
    const ResourceData *group = tree.value() ? resourceOf(*tree.value(), groupIconType) : nullptr;
    if (group == nullptr) {
        return std::optional<Bytes>();
    }
    const auto content = readResource(file.value(), headers.value(), *group, maxIconGroupSize);
    if (content.hasError()) {
        return std::optional<Bytes>();
    }
    const ResourceData *best
        = bestImage(*tree.value(), file.value(), headers.value(), content.value());
    if (best == nullptr) {
        return std::optional<Bytes>();
    }
    const auto bytes = readResource(file.value(), headers.value(), *best, maxImageSize);
    if (bytes.hasError()) {
        return bytes.error();
    }
    const auto image = describeIconImage(bytes.value());
    return image.hasError() ? std::optional<Bytes>() : icoFileOf(image.value());
}

} // namespace pe
