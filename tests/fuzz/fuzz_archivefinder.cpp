// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/archive/archive.h"
#include "helpers/self-extractor/start/peimage.h"
#include "helpers/self-extractor/start/startplan.h"
#include "tests/fuzz/inputsource.h"
#include "tests/fuzz/require.h"
#include "tests/fuzz/windowsnames.h"
#include "tests/helpers/self-extractor/countedmemory.h"

#include <algorithm>
#include <optional>

using namespace sfx;

namespace {

// Returns a number from the file, or nothing if the file ends before it.
std::optional<std::uint64_t> number(const std::uint8_t *data, std::size_t size, std::uint64_t at,
                                    unsigned width)
{
    if (at > size || width > size - at) {
        return std::nullopt;
    }
    std::uint64_t value = 0;
    for (unsigned i = width; i-- > 0;) {
        value = value * 256 + data[at + i];
    }
    return value;
}

// A second way to find the end of the image: the largest end of the section table and all sections.
std::optional<std::uint64_t> imageEnd(const std::uint8_t *data, std::size_t size)
{
    const auto pe = number(data, size, 60, 4);
    if (!pe || number(data, size, 0, 2) != 0x5a4dU || number(data, size, *pe, 4) != 0x4550U) {
        return std::nullopt;
    }
    const auto count = number(data, size, *pe + 6, 2);
    const auto optionalSize = number(data, size, *pe + 20, 2);
    if (!count || !optionalSize || *count < 1 || *count > 96) {
        return std::nullopt;
    }
    const std::uint64_t table = *pe + 24 + *optionalSize;
    std::uint64_t end = table + 40 * *count;
    for (std::uint64_t i = 0; i < *count; ++i) {
        const auto rawSize = number(data, size, table + 40 * i + 16, 4);
        const auto rawPointer = number(data, size, table + 40 * i + 20, 4);
        if (rawSize && rawPointer && *rawSize != 0) {
            end = std::max(end, *rawPointer + *rawSize);
        }
    }
    return end <= size ? std::optional(end) : std::nullopt;
}

} // namespace

// Finds the archive's table of contents in a file of any bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    countedmemory::reset();
    InputSource source(data, size);
    PeImage image;
    const Status found = image.read(source);
    const auto expected = imageEnd(data, size);
    require((found == Status::Ok) == expected.has_value(), "an image is found where there is one");
    if (found != Status::Ok) {
        require(found == Status::Damaged, "what is no image is damaged");
        return 0;
    }
    require(image.end() == *expected, "the image ends where its last section does");

    StartPlan plan;
    std::uint64_t archiveOffset = 0;
    if (readStartPlan(source, plan, archiveOffset) != Status::Ok) {
        return 0;
    }
    require(archiveOffset > *expected && archiveOffset <= size
                && archiveOffset - *expected <= maxBlockSize,
            "the archive lies behind the block");
    require(windowsnames::isRelativePath({plan.program().data(), plan.program().size()}),
            "the program is in the archive's folder");
    require(windowsnames::isName({plan.folderName().data(), plan.folderName().size()}),
            "the folder is one plain name");
    {
        Archive archive(source);
        if (archive.open(archiveOffset) == Status::Ok) {
            require(archiveOffset + 32 <= size, "an archive has a header");
            require(archive.packBase() <= size, "packed streams lie in the file");
        }
    }
    // The archive's tables, the dictionaries of a packed header, and buffers.
    require(countedmemory::peak() <= 2 * Archive::headerBudget + (8u << 20), "memory is bounded");
    return 0;
}
