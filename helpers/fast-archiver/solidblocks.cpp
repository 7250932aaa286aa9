// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/solidblocks.h"

#include <algorithm>
#include <iterator>
#include <tuple>

namespace fast {

namespace {

constexpr std::uint64_t mebibyte = 1U << 20;
constexpr std::uint64_t smallestBlock = 32 * mebibyte;
constexpr std::uint64_t largestBlock = 64 * mebibyte;
// So 2, 4 and 8 processors have equal work with a folder of 256 to 512 MiB. More blocks would make the
// archive larger.
constexpr std::uint64_t wantedBlocks = 8;
// Each half is at least as large as a window, so the archive hardly grows.
constexpr std::uint64_t leastHalved = 16 * mebibyte;

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

// Divides files of one kind into `count` about equal blocks of at most `largest` bytes. Each file goes
// where its middle lies.
void divide(const SolidBlock &all, std::uint64_t count, std::uint64_t largest,
            const std::vector<SourceFile> &files, std::vector<SolidBlock> &blocks)
{
    const std::uint64_t share = divideUp(all.size, count);
    std::uint64_t begin = 0;
    std::uint64_t last = UINT64_MAX;
    for (const std::size_t index : all.files) {
        const std::uint64_t size = files[index].size;
        const std::uint64_t place = (begin + size / 2) / share;
        if (place != last || blocks.back().size + size > largest) {
            blocks.push_back({{}, 0, all.isFiltered, false});
        }
        blocks.back().files.push_back(index);
        blocks.back().size += size;
        begin += size;
        last = place;
    }
}

// The blocks are about equal, so no processor has much less to do than another.
void addBlocks(const SolidBlock &all, const BlockSizes &sizes, const std::vector<SourceFile> &files,
               std::vector<SolidBlock> &blocks)
{
    const std::uint64_t count
        = std::max(divideUp(all.size, sizes.largest), (all.size + sizes.wanted / 2) / sizes.wanted);
    divide(all, count, sizes.largest, files, blocks);
}

// Cuts one block into halves, which come last. A processor that has unpacked its blocks takes one of
// them, while another processor is still busy. With two blocks, there would be nothing to gain.
void halveOneBlock(const std::vector<SourceFile> &files, std::vector<SolidBlock> &blocks)
{
    const auto found = std::find_if(blocks.rbegin(), blocks.rend(), [](const SolidBlock &block) {
        return block.files.size() > 1 && block.size >= leastHalved;
    });
    if (blocks.size() < 3 || found == blocks.rend()) {
        return;
    }
    const SolidBlock whole = std::move(*found);
    blocks.erase(std::next(found).base());
    divide(whole, 2, whole.size, files, blocks);
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
        SolidBlock all = {{}, 0, isFiltered, false};
        for (; begin != keys.end() && filters(begin->content) == isFiltered; ++begin) {
            all.files.push_back(begin->index);
            all.size += files[begin->index].size;
        }
        addBlocks(all, sizes, files, blocks);
    }
    if (given == 0) {
        halveOneBlock(files, blocks);
    }
    return blocks;
}

} // namespace fast
