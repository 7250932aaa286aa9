// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/blockreader.h"

#include "helpers/self-extractor/archive/entryname.h"
#include "helpers/self-extractor/start/peimage.h"

#include <cstring>

namespace sfx {

namespace {

// A part of the block's bytes, which belong to the caller.
struct Slice
{
    const char *data = nullptr;
    std::size_t size = 0;

    bool equals(const char *text) const
    {
        return size == std::strlen(text) && std::memcmp(data, text, size) == 0;
    }
};

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

// Removes the next line from `rest`. Returns false if there is no further line end.
bool takeLine(Slice &rest, Slice &line)
{
    const void *found = rest.size == 0 ? nullptr : std::memchr(rest.data, '\n', rest.size);
    if (found == nullptr) {
        return false;
    }
    const char *end = static_cast<const char *>(found);
    line.data = rest.data;
    line.size = static_cast<std::size_t>(end - rest.data);
    rest.data = end + 1;
    rest.size -= line.size + 1;
    if (line.size != 0 && line.data[line.size - 1] == '\r') {
        --line.size;
    }
    return true;
}

// Splits `Key="value"`.
bool splitLine(const Slice &line, Slice &key, Slice &value)
{
    const void *found = line.size == 0 ? nullptr : std::memchr(line.data, '=', line.size);
    if (found == nullptr) {
        return false;
    }
    key.data = line.data;
    key.size = static_cast<std::size_t>(static_cast<const char *>(found) - line.data);
    const std::size_t open = key.size + 1;
    if (line.size < open + 2 || line.data[open] != '"' || line.data[line.size - 1] != '"') {
        return false;
    }
    value.data = line.data + open + 1;
    value.size = line.size - open - 2;
    return true;
}

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
        if (!splitLine(line, key, value)) {
            return false;
        }
        for (int i = 0; i < KeyCount; ++i) {
            if (!key.equals(keyNames[i])) {
                continue;
            }
            if (values[i].data != nullptr) {
                return false;
            }
            values[i] = value;
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

} // namespace

Status parseConfigBlock(const char *data, std::size_t size, ConfigBlock &block,
                        std::size_t &blockSize)
{
    Slice rest{data, size < maxBlockSize ? size : maxBlockSize};
    Slice line;
    Slice values[KeyCount];
    if (!takeLine(rest, line) || !line.equals(";!@Install@!UTF-8!") || !readValues(rest, values)) {
        return Status::Damaged;
    }
    const Slice &program = values[RunProgram];
    const Slice &title = values[Title];
    if (program.data == nullptr || values[InstallPath].data == nullptr
        || !decodeUtf8(program.data, program.size, block.runProgram)
        || !isSafeComponent(block.runProgram.data(), block.runProgram.size())
        || !readFolderName(values[InstallPath], block.folderName)
        || (title.data != nullptr && !decodeUtf8(title.data, title.size, block.title))) {
        return Status::Damaged;
    }
    block.silent = values[Silent].data != nullptr && values[Silent].equals("1");
    block.progress = values[Progress].data != nullptr && values[Progress].equals("yes");
    blockSize = static_cast<std::size_t>(rest.data - data);
    return Status::Ok;
}

Status readConfigBlock(ByteSource &source, ConfigBlock &block, std::uint64_t &archiveOffset)
{
    std::uint64_t imageEnd = 0;
    const Status found = findImageEnd(source, imageEnd);
    if (found != Status::Ok) {
        return found;
    }
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
    const Status parsed = parseConfigBlock(bytes.data(), size, block, blockSize);
    archiveOffset = imageEnd + blockSize;
    return parsed;
}

} // namespace sfx
