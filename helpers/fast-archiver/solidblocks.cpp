// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/solidblocks.h"

#include <algorithm>
#include <span>
#include <tuple>

namespace fast {

namespace {

constexpr std::uint64_t mebibyte = 1U << 20;
constexpr std::uint64_t smallestBlock = 32 * mebibyte;
constexpr std::uint64_t largestBlock = 64 * mebibyte;
// So 2, 4 and 8 processors have equal work with a folder of 256 to 512 MiB. More blocks would make the
// archive larger.
constexpr std::uint64_t wantedBlocks = 8;

std::uint64_t divideUp(std::uint64_t number, std::uint64_t by)
{
    return (number + by - 1) / by;
}

bool isX86(Content content)
{
    return content == Content::ProgramX86 || content == Content::ProgramX64;
}

char16_t lowerCase(char16_t unit)
{
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

// What the order of files depends on. Programs have all kinds of extensions and are similar all the
// same.
struct SortKey
{
    explicit SortKey(const SourceFile &file, std::size_t position)
        : content(file.content)
        , index(position)
    {
        std::u16string lower(file.path.size(), u'\0');
        std::transform(file.path.begin(), file.path.end(), lower.begin(), lowerCase);
        name = lower.substr(lower.rfind(u'/') + 1);
        const std::size_t dot = name.rfind(u'.');
        if (content == Content::Other && dot != std::u16string::npos) {
            extension = name.substr(dot);
        }
    }

    auto tied() const { return std::tie(content, extension, name, index); }
    bool operator<(const SortKey &other) const { return tied() < other.tied(); }

    Content content;
    std::u16string extension;
    std::u16string name;
    std::size_t index;
};

struct BlockSizes
{
    std::uint64_t wanted;
    std::uint64_t largest;
};

// Divides the files of one kind, in the order of their keys, into about equal blocks of about
// sizes.wanted, and of at most sizes.largest. So no processor has much less to do than another. Each
// file goes where its middle lies.
void addBlocks(std::span<const SortKey> keys, bool isFiltered, const std::vector<SourceFile> &files,
               const BlockSizes &sizes, std::vector<SolidBlock> &blocks)
{
    std::uint64_t total = 0;
    for (const SortKey &key : keys) {
        total += files[key.index].size;
    }
    const std::uint64_t count
        = std::max(divideUp(total, sizes.largest), (total + sizes.wanted / 2) / sizes.wanted);
    const std::uint64_t share = divideUp(total, count);
    std::uint64_t begin = 0;
    std::uint64_t last = UINT64_MAX;
    for (const SortKey &key : keys) {
        const std::uint64_t size = files[key.index].size;
        const std::uint64_t place = (begin + size / 2) / share;
        if (place != last || blocks.back().size + size > sizes.largest) {
            blocks.push_back({{}, 0, isFiltered, false});
        }
        blocks.back().files.push_back(key.index);
        blocks.back().size += size;
        begin += size;
        last = place;
    }
}

} // namespace

std::uint64_t blockSizeFor(std::uint64_t totalSize)
{
    const std::uint64_t size = divideUp(totalSize, wantedBlocks);
    return std::clamp(size, smallestBlock, largestBlock);
}

std::vector<SolidBlock> planBlocks(const std::vector<SourceFile> &files, const PackOptions &options)
{
    std::uint64_t total = 0;
    for (const SourceFile &file : files) {
        total += file.size;
    }
    const std::uint64_t given = options.blockSize;
    const BlockSizes sizes = given != 0 ? BlockSizes{given, given}
                                        : BlockSizes{blockSizeFor(total), largestBlock};
    const auto filters = [&options](Content content) {
        return options.filtersPrograms && isX86(content);
    };
    std::vector<SolidBlock> blocks;
    std::vector<SortKey> keys;
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (files[i].size >= std::min(sizes.wanted, largeFile)) {
            blocks.push_back(
                {{i}, files[i].size, filters(files[i].content), files[i].size >= largeFile});
        } else if (files[i].size != 0) {
            keys.emplace_back(files[i], i);
        }
    }
    std::stable_sort(blocks.begin(), blocks.end(),
                     [](const SolidBlock &one, const SolidBlock &other) {
                         return one.size > other.size;
                     });
    std::sort(keys.begin(), keys.end());
    for (auto begin = keys.begin(); begin != keys.end();) {
        const bool isFiltered = filters(begin->content);
        const auto end = std::find_if(begin, keys.end(), [&](const SortKey &key) {
            return filters(key.content) != isFiltered;
        });
        addBlocks({begin, end}, isFiltered, files, sizes, blocks);
        begin = end;
    }
    return blocks;
}

} // namespace fast
