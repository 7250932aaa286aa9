// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/blockreader.h"
#include "tests/fuzz/require.h"
#include "tests/fuzz/windowsnames.h"

#include <cstring>
#include <string>
#include <string_view>

using namespace sfx;

namespace {

std::u16string_view viewOf(const Text &text)
{
    return {text.data(), text.size()};
}

bool isSame(const ConfigBlock &left, const ConfigBlock &right)
{
    return viewOf(left.title) == viewOf(right.title)
        && viewOf(left.runProgram) == viewOf(right.runProgram)
        && viewOf(left.folderName) == viewOf(right.folderName) && left.silent == right.silent
        && left.progress == right.progress;
}

// How many lines begin with this key, up to the end of the block.
int countOf(std::string_view block, std::string_view key)
{
    const std::string wanted = '\n' + std::string(key) + '=';
    int count = 0;
    for (std::size_t at = block.find(wanted); at != block.npos; at = block.find(wanted, at + 1)) {
        ++count;
    }
    return count;
}

// Returns true if the block has exactly this line.
bool hasLine(std::string_view block, const std::string &line)
{
    return block.find('\n' + line + '\n') != block.npos
        || block.find('\n' + line + "\r\n") != block.npos;
}

void checkAccepted(std::string_view block, const ConfigBlock &parsed)
{
    require(block.size() <= maxBlockSize, "a block has at most 64 KiB");
    require(block.starts_with(";!@Install@!UTF-8!\n")
                || block.starts_with(";!@Install@!UTF-8!\r\n"),
            "a block begins with its first marker");
    require(block.ends_with("\n;!@InstallEnd@!\n") || block.ends_with("\n;!@InstallEnd@!\r\n"),
            "a block ends with its last marker");
    require(windowsnames::isName(viewOf(parsed.runProgram)), "the program is one plain name");
    require(windowsnames::isName(viewOf(parsed.folderName)), "the folder is one plain name");
    for (const char *key : {"RunProgram", "InstallPath"}) {
        require(countOf(block, key) == 1, "a needed key comes once");
    }
    for (const char *key : {"Title", "BeginPrompt", "Progress", "GUIMode", "Silent", "Overwrite"}) {
        require(countOf(block, key) <= 1, "a key comes once at most");
    }
    require(parsed.silent == hasLine(block, "Silent=\"1\""), "silent is what the block says");
    require(parsed.progress == hasLine(block, "Progress=\"yes\""),
            "progress is what the block says");
}

} // namespace

// The block's parser, with any bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const char *text = reinterpret_cast<const char *>(data);
    ConfigBlock block;
    std::size_t blockSize = 0;
    const Status status = parseConfigBlock(text, size, block, blockSize);
    require(status == Status::Ok || status == Status::Damaged || status == Status::NoMemory,
            "a block is right or damaged");
    if (status != Status::Ok) {
        return 0;
    }
    require(blockSize <= size, "a block lies in its file");
    checkAccepted({text, blockSize}, block);

    // The bytes after the block do not matter. All bytes of the block are needed.
    ConfigBlock alone;
    std::size_t aloneSize = 0;
    const std::string copy(text, blockSize);
    require(parseConfigBlock(copy.data(), copy.size(), alone, aloneSize) == Status::Ok
                && aloneSize == blockSize && isSame(alone, block),
            "a block reads the same without what follows");
    ConfigBlock cut;
    require(parseConfigBlock(copy.data(), copy.size() - 1, cut, aloneSize) == Status::Damaged,
            "a block that is cut is damaged");
    return 0;
}
