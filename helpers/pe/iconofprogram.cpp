// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/iconofprogram.h"

#include "helpers/pe/icofile.h"
#include "helpers/pe/resourcetree.h"

#include <utility>

namespace pe {

namespace {

constexpr std::uint32_t maxImageSize = 16U << 20;

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

} // namespace

Result<std::optional<Bytes>> iconOfProgram(const std::filesystem::path &program)
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
    const ResourceData *group =
        tree.value() ? resourceOf(*tree.value(), groupIconType) : nullptr;
    if (group == nullptr) {
        return std::optional<Bytes>();
    }
    const auto content = readResource(file.value(), headers.value(), *group, maxImageSize);
    if (content.hasError()) {
        return std::optional<Bytes>();
    }
    Bytes best;
    IconImage bestImage;
    for (const std::uint16_t id : imageIdsOfGroup(content.value())) {
        const ResourceData *data = imageOf(*tree.value(), id);
        if (data == nullptr) {
            continue;
        }
        auto bytes = readResource(file.value(), headers.value(), *data, maxImageSize);
        if (bytes.hasError()) {
            continue;
        }
        const auto image = describeIconImage(bytes.value());
        // Moving a vector leaves its bytes where they are, so the image's view of them stays good.
        if (!image.hasError() && isBetter(image.value(), bestImage)) {
            bestImage = image.value();
            best = std::move(bytes.value());
        }
    }
    return best.empty() ? std::optional<Bytes>() : icoFileOf(bestImage);
}

} // namespace pe
