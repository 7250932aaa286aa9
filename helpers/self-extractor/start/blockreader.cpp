// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/blockreader.h"

#include "helpers/self-extractor/archive/entryname.h"
#include "helpers/self-extractor/start/keylines.h"

#include <cstring>

namespace sfx {

namespace {

// The keys that the packer writes. Those without a member in ConfigBlock are only checked for their
// form.
enum Key {
    Title,
    BeginPrompt,
    Progress,
    RunProgram,
    InstallPath,
    GuiMode,
    Silent,
    Overwrite,
    KeyCount
};

constexpr const char *keyNames[KeyCount] = {"Title",       "BeginPrompt", "Progress", "RunProgram",
                                            "InstallPath", "GUIMode",     "Silent",   "Overwrite"};

bool readValues(Slice &rest, Slice (&values)[KeyCount])
{
    Slice line;
    while (takeLine(rest, line)) {
        if (line.equals(";!@InstallEnd@!")) {
            return true;
        }
        Slice key;
        Slice value;
        if (line.size == 0 || line.data[0] == ';') {
            continue;
        }
        if (!splitLine(line, key, value)
            || storeValue(key, value, keyNames, KeyCount, values) == KeyUse::Repeated) {
            return false;
        }
    }
    return false;
}

// Reads `%%T\name`. A name that leads out of the private folder is an attack. A name that Windows
// merely does not allow comes from a program with an unusual name, which should run.
bool readFolderName(const Slice &installPath, Text &folder)
{
    constexpr char prefix[] = "%%T\\";
    constexpr std::size_t prefixSize = sizeof prefix - 1;
    Text name;
    if (installPath.size < prefixSize || std::memcmp(installPath.data, prefix, prefixSize) != 0
        || !decodeUtf8(installPath.data + prefixSize, installPath.size - prefixSize, name)) {
        return false;
    }
    for (std::size_t i = 0; i < name.size(); ++i) {
        const char16_t unit = name.data()[i];
        if (unit == u'/' || unit == u'\\' || unit == u':') {
            return false;
        }
    }
    const bool parent = name.size() == 2 && name.data()[0] == u'.' && name.data()[1] == u'.';
    if (parent) {
        return false;
    }
    if (!isSafeComponent(name.data(), name.size())) {
        return folder.assign(u"app", 3);
    }
    return folder.assign(name.data(), name.size());
}

bool readProgram(const Slice &program, Text &name)
{
    return program.data != nullptr && decodeUtf8(program.data, program.size, name)
        && isSafeComponent(name.data(), name.size());
}

} // namespace

Status parseConfigBlock(const char *data, std::size_t size, ConfigBlock &block,
                        std::size_t &blockSize, const BlockUse &use)
{
    Slice rest{data, size < maxBlockSize ? size : maxBlockSize};
    Slice line;
    Slice values[KeyCount];
    if (!takeLine(rest, line) || !line.equals(";!@Install@!UTF-8!") || !readValues(rest, values)) {
        return Status::Damaged;
    }
    const Slice &title = values[Title];
    if ((use.runProgram && !readProgram(values[RunProgram], block.runProgram))
        || (use.installPath && !readFolderName(values[InstallPath], block.folderName))
        || (title.data != nullptr && !decodeUtf8(title.data, title.size, block.title))) {
        return Status::Damaged;
    }
    block.silent = values[Silent].data != nullptr && values[Silent].equals("1");
    block.progress = values[Progress].data != nullptr && values[Progress].equals("yes");
    blockSize = static_cast<std::size_t>(rest.data - data);
    return Status::Ok;
}

Status readConfigBlock(ByteSource &source, std::uint64_t imageEnd, const BlockUse &use,
                       ConfigBlock &block, std::uint64_t &archiveOffset)
{
    const std::uint64_t left = source.size() - imageEnd;
    const std::size_t size = left < maxBlockSize ? static_cast<std::size_t>(left) : maxBlockSize;
    Array<char> bytes;
    if (!bytes.allocate(size)) {
        return Status::NoMemory;
    }
    if (!source.readAt(imageEnd, bytes.data(), size)) {
        return Status::ReadFailed;
    }
    std::size_t blockSize = 0;
    const Status parsed = parseConfigBlock(bytes.data(), size, block, blockSize, use);
    archiveOffset = imageEnd + blockSize;
    return parsed;
}

} // namespace sfx
