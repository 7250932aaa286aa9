// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/versionresource.h"

#include <optional>

namespace pe {

namespace {

constexpr std::uint16_t versionType = 16; // WinUser.h: RT_VERSION
constexpr std::uint32_t maxVersionSize = 64 * 1024;

// Every structure begins with its length, the length of its value and a type, 16 bits each, and a
// zero-terminated key. The value and the structures inside begin at multiples of 4.
struct Node
{
    std::u16string key;
    std::size_t value = 0;  // position
    std::size_t inside = 0; // position of the first structure inside; of strings, unused
    std::size_t end = 0;
};

constexpr std::size_t headSize = 6;

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
    std::size_t at = begin + headSize;
    for (; at + 2 <= node.end && read16(bytes, at) != 0; at += 2) {
        node.key += static_cast<char16_t>(read16(bytes, at));
    }
    if (at + 2 > node.end) {
        return std::nullopt; // the key does not end
    }
    node.value = alignUp(at + 2, 4);
    node.inside = alignUp(node.value + read16(bytes, begin + 2), 4);
    return node;
}

// Calls `visit` with each structure in [begin, end) until it returns false. Returns false if one is
// damaged.
template <typename Visit>
bool forEachNode(ByteView bytes, std::size_t begin, std::size_t end, Visit visit)
{
    for (std::size_t at = begin; at < end;) {
        const auto node = readNode(bytes, at, end);
        if (!node) {
            return false;
        }
        if (!visit(*node)) {
            return true;
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

} // namespace

Result<std::vector<VersionString>> readVersionStrings(ByteView resource)
{
    std::vector<VersionString> strings;
    const auto root = readNode(resource, 0, resource.size());
    bool isIntact = root && root->key == u"VS_VERSION_INFO";
    isIntact = isIntact && forEachNode(resource, root->inside, root->end, [&](const Node &info) {
                   if (info.key != u"StringFileInfo") {
                       return true;
                   }
                   // The tables have no value; each is one language.
                   const auto table = readNode(resource, info.value, info.end);
                   isIntact = table
                       && forEachNode(resource, table->value, table->end, [&](const Node &string) {
                                  strings.push_back(stringOf(resource, string));
                                  return true;
                              });
                   return false;
               });
    if (!isIntact) {
        return Error{ErrorKind::Damaged, "the version resource is damaged"};
    }
    return strings;
}

Result<std::vector<VersionString>> versionStringsOf(const File &file, const PeHeaders &headers)
{
    auto tree = readResourceTree(file, headers);
    if (tree.hasError()) {
        return tree.error();
    }
    if (!tree.value()) {
        return std::vector<VersionString>();
    }
    const ResourceEntry *type = findEntry(tree.value()->root, ResourceKey{{}, versionType});
    if (type == nullptr || !type->directory || type->directory->entries.empty()) {
        return std::vector<VersionString>();
    }
    const ResourceData *data = firstData(type->directory->entries.front());
    if (data == nullptr) {
        return std::vector<VersionString>();
    }
    auto content = readResource(file, headers, *data, maxVersionSize);
    if (content.hasError()) {
        return content.error();
    }
    return readVersionStrings(content.value());
}

} // namespace pe
