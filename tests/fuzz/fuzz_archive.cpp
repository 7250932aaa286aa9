// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/archive/contents.h"
#include "tests/fuzz/checkingsink.h"
#include "tests/fuzz/discardingsink.h"
#include "tests/fuzz/inputsource.h"
#include "tests/fuzz/require.h"
#include "tests/fuzz/sealedarchive.h"
#include "tests/helpers/self-extractor/countedmemory.h"

#include <vector>

using namespace sfx;

namespace {

constexpr std::size_t memoryLimit = 96u << 20;
constexpr std::uint64_t outputLimit = 4u << 20;
constexpr std::uint8_t usualMinorVersion = 4;

Status run(const std::vector<std::uint8_t> &bytes, unsigned threads)
{
    InputSource source(bytes.data(), bytes.size());
    Archive archive(source);
    Status status = archive.open(0);
    if (status != Status::Ok) {
        return status;
    }
    Text program;
    std::uint64_t totalBytes = 0;
    if (!program.assign(u"main.exe", 8)) {
        return Status::NoMemory;
    }
    status = checkContents(archive, program, upperCaseAscii, totalBytes);
    // Archives without the program are unpacked too, so that more inputs reach the decoders.
    if (status != Status::Ok && status != Status::ProgramMissing) {
        return status;
    }
    if (threads > 1) {
        std::atomic<std::uint64_t> written = 0;
        DiscardingSink sink(written, outputLimit);
        return unpack(archive, sink, totalBytes, {threads});
    }
    CheckingSink sink(archive, totalBytes, outputLimit);
    status = unpack(archive, sink, totalBytes);
    sink.checkEnd(status);
    return status;
}

} // namespace

// Reads and unpacks an archive of any bytes, with correct check sums.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < startHeaderSize) {
        return 0;
    }
    std::vector<std::uint8_t> archive(data, data + size);
    sealArchive(archive);
    // Nothing reads the minor version. If it is not the usual one, it selects the block of memory
    // that is refused.
    const unsigned minor = archive[7];
    const unsigned failing = minor < usualMinorVersion ? minor + 1
        : minor == usualMinorVersion                   ? 0
                                                       : minor;
    const std::size_t before = countedmemory::inUse();
    countedmemory::reset(memoryLimit, failing);
    const Status inOne = run(archive, 1);
    countedmemory::reset(memoryLimit, failing);
    const Status inTwo = run(archive, 2);
    // Two decoders need more memory than one. Otherwise both runs have the same result.
    require((inOne == Status::Ok) == (inTwo == Status::Ok) || inOne == Status::NoMemory
                || inTwo == Status::NoMemory,
            "several threads unpack what one does");
    require(countedmemory::inUse() == before, "all memory is given back");
    return 0;
}
