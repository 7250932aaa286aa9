// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/solidblocks.h"

#include <algorithm>
#include <tuple>

namespace fast {

namespace {

constexpr std::uint64_t mebibyte = 1U << 20;
constexpr std::uint64_t smallestBlock = 32 * mebibyte;
constexpr std::uint64_t largestBlock = 64 * mebibyte;
// A folder of 200 to 400 MB has at least so many. More would make the archive larger.
constexpr std::uint64_t wantedBlocks = 6;

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

} // namespace

std::uint64_t blockSizeFor(std::uint64_t totalSize)
{
    const std::uint64_t size = (totalSize + wantedBlocks - 1) / wantedBlocks;
    return std::clamp(size, smallestBlock, largestBlock);
}

std::vector<SolidBlock> planBlocks(const std::vector<SourceFile> &files, const PackOptions &options)
{
    std::uint64_t total = 0;
    for (const SourceFile &file : files) {
        total += file.size;
    }
    const std::uint64_t blockSize = options.blockSize != 0 ? options.blockSize
                                                           : blockSizeFor(total);
    std::vector<SolidBlock> blocks;
    std::vector<SortKey> keys;
    for (std::size_t i = 0; i < files.size(); ++i) {
        const bool isFiltered = options.filtersPrograms && isX86(files[i].content);
        if (files[i].size >= std::min(blockSize, largeFile)) {
            blocks.push_back({{i}, files[i].size, isFiltered, files[i].size >= largeFile});
        } else if (files[i].size != 0) {
            keys.emplace_back(files[i], i);
        }
    }
    std::stable_sort(blocks.begin(), blocks.end(),
                     [](const SolidBlock &one, const SolidBlock &other) {
                         return one.size > other.size;
                     });
    std::sort(keys.begin(), keys.end());
    bool isOpen = false; // whether the last block takes more files
    for (const SortKey &key : keys) {
        const SourceFile &file = files[key.index];
        const bool isFiltered = options.filtersPrograms && isX86(file.content);
        if (!isOpen || blocks.back().isFiltered != isFiltered
            || blocks.back().size + file.size > blockSize) {
            blocks.push_back({{}, 0, isFiltered, false});
            isOpen = true;
        }
        blocks.back().files.push_back(key.index);
        blocks.back().size += file.size;
    }
    return blocks;
}

} // namespace fast
