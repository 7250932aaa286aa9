// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/versioninfo.h"

#include <algorithm>

namespace pe {

namespace {

constexpr std::size_t headSize = 6;
constexpr std::size_t fixedSize = 52;
constexpr std::uint32_t fixedSignature = 0xfeef04bd;

// Every structure begins with its length, the length of its value and a type, 16 bits each, and a
// zero-terminated key. The value and the structures inside begin at multiples of 4.
struct Node
{
    std::u16string key;
    std::size_t value = 0;       // position
    std::size_t valueLength = 0; // as the structure says: of strings in units, of others in bytes
    std::size_t end = 0;

    // Where the structures inside begin, after a value in bytes.
    std::size_t inside() const { return alignUp(value + valueLength, 4); }
};

// Reads the structure at `begin`, which must end before `limit`. Nothing if it is damaged.
std::optional<Node> readNode(ByteView bytes, std::size_t begin, std::size_t limit)
{
    if (!fits(begin, headSize, limit)) {
        return std::nullopt;
    }
    const std::size_t length = read16(bytes, begin);
    if (length < headSize || length > limit - begin) {
        return std::nullopt;
    }
    Node node;
    node.end = begin + length;
    node.valueLength = read16(bytes, begin + 2);
    std::size_t at = begin + headSize;
    for (; at + 2 <= node.end && read16(bytes, at) != 0; at += 2) {
        node.key += static_cast<char16_t>(read16(bytes, at));
    }
    if (at + 2 > node.end) {
        return std::nullopt; // the key does not end
    }
    node.value = alignUp(at + 2, 4);
    return node;
}

bool isPadding(ByteView bytes, std::size_t begin, std::size_t end)
{
    const auto rest = bytes.subspan(begin, end - begin);
    return std::all_of(rest.begin(), rest.end(), [](std::uint8_t byte) { return byte == 0; });
}

// Calls `visit` with each structure in [begin, end) until it returns false. Returns false if it did, or
// if one is damaged. Some compilers count zeros after the last structure to the one around it.
template <typename Visit>
bool forEachNode(ByteView bytes, std::size_t begin, std::size_t end, Visit visit)
{
    for (std::size_t at = begin; at < end && !isPadding(bytes, at, end);) {
        const auto node = readNode(bytes, at, end);
        if (!node || !visit(*node)) {
            return false;
        }
        at = alignUp(node->end, 4);
    }
    return true;
}

VersionString stringOf(ByteView bytes, const Node &node)
{
    VersionString string{node.key, {}};
    for (std::size_t at = node.value; at + 2 <= node.end && read16(bytes, at) != 0; at += 2) {
        string.value += static_cast<char16_t>(read16(bytes, at));
    }
    return string;
}

// Two 32-bit numbers, of which the first has the higher 16-bit numbers.
VersionNumber numberAt(ByteView bytes, std::size_t at)
{
    return {read16(bytes, at + 2), read16(bytes, at), read16(bytes, at + 6), read16(bytes, at + 4)};
}

std::optional<FixedVersion> fixedOf(ByteView bytes, const Node &root)
{
    if (root.valueLength < fixedSize || !fits(root.value, fixedSize, root.end)
        || read32(bytes, root.value) != fixedSignature) {
        return std::nullopt;
    }
    const auto field = [&](std::size_t index) {
        return read32(bytes, root.value + 4 * index);
    };
    FixedVersion fixed;
    fixed.structVersion = field(1);
    fixed.file = numberAt(bytes, root.value + 8);
    fixed.product = numberAt(bytes, root.value + 16);
    fixed.flagsMask = field(6);
    fixed.flags = field(7);
    fixed.system = field(8);
    fixed.type = field(9);
    fixed.subtype = field(10);
    fixed.date = numberAt(bytes, root.value + 44);
    return fixed;
}

// The blocks StringFileInfo and VarFileInfo and their tables have no value.
bool readTables(ByteView bytes, const Node &block, VersionInfo &info)
{
    return forEachNode(bytes, block.value, block.end, [&](const Node &node) {
        VersionTable table{node.key, {}};
        const bool isIntact = forEachNode(bytes, node.value, node.end, [&](const Node &string) {
            table.strings.push_back(stringOf(bytes, string));
            return true;
        });
        info.tables.push_back(std::move(table));
        return isIntact;
    });
}

bool readTranslations(ByteView bytes, const Node &block, VersionInfo &info)
{
    return forEachNode(bytes, block.value, block.end, [&](const Node &var) {
        if (var.key != u"Translation") {
            return true;
        }
        const std::size_t end = std::min(var.value + var.valueLength, var.end);
        for (std::size_t at = var.value; at + 4 <= end; at += 4) {
            info.translations.push_back({read16(bytes, at), read16(bytes, at + 2)});
        }
        return true;
    });
}

} // namespace

Result<VersionInfo> readVersionInfo(ByteView resource)
{
    VersionInfo info;
    const auto root = readNode(resource, 0, resource.size());
    const bool isIntact = root && root->key == u"VS_VERSION_INFO"
        && forEachNode(resource, root->inside(), root->end, [&](const Node &block) {
                              if (block.key == u"StringFileInfo") {
                                  return readTables(resource, block, info);
                              }
                              return block.key != u"VarFileInfo"
                                  || readTranslations(resource, block, info);
                          });
    if (!isIntact) {
        return Error{ErrorKind::Damaged, "the version resource is damaged"};
    }
    info.fixed = fixedOf(resource, *root);
    return info;
}

} // namespace pe
