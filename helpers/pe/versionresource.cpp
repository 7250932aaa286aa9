// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/versionresource.h"

namespace pe {

namespace {

Error damaged(const char *what)
{
    return {ErrorKind::Damaged, what};
}

// A version resource in the tree. Not read yet.
struct Place
{
    ResourceKey name;
    std::uint16_t language = 0;
    ResourceData data;
};

Result<std::vector<Place>> placesOf(const File &file, const PeHeaders &headers)
{
    auto tree = readResourceTree(file, headers);
    if (tree.hasError()) {
        return tree.error();
    }
    std::vector<Place> places;
    const ResourceEntry *type
        = tree.value() ? findEntry(tree.value()->root, ResourceKey{{}, versionType}) : nullptr;
    if (type == nullptr || !type->directory) {
        return places;
    }
    for (const ResourceEntry &name : type->directory->entries) {
        if (!name.directory) {
            places.push_back({name.key, 0, name.data});
            continue;
        }
        for (const ResourceEntry &language : name.directory->entries) {
            if (language.directory || language.key.name || language.key.id > 0xffff) {
                return damaged("the version resource has no language");
            }
            places.push_back(
                {name.key, static_cast<std::uint16_t>(language.key.id), language.data});
        }
    }
    return places;
}

Result<VersionInfo> readPlace(const File &file, const PeHeaders &headers, const Place &place)
{
    const auto content = readResource(file, headers, place.data, maxVersionSize);
    if (content.hasError()) {
        return content.error();
    }
    return readVersionInfo(content.value());
}

} // namespace

Result<std::vector<VersionResource>> versionResourcesOf(const File &file, const PeHeaders &headers)
{
    const auto places = placesOf(file, headers);
    if (places.hasError()) {
        return places.error();
    }
    std::vector<VersionResource> resources;
    std::uint64_t size = 0;
    for (const Place &place : places.value()) {
        size += place.data.size;
        if (size > maxVersionSizes) {
            return damaged("the version resources are too large");
        }
        auto info = readPlace(file, headers, place);
        if (info.hasError()) {
            return info.error();
        }
        resources.push_back({place.name, place.language, std::move(info.value())});
    }
    return resources;
}

Result<std::vector<VersionString>> versionStringsOf(const File &file, const PeHeaders &headers)
{
    const auto places = placesOf(file, headers);
    if (places.hasError()) {
        return places.error();
    }
    if (places.value().empty()) {
        return std::vector<VersionString>();
    }
    auto info = readPlace(file, headers, places.value().front());
    if (info.hasError()) {
        return info.error();
    }
    if (info.value().tables.empty()) {
        return std::vector<VersionString>();
    }
    return std::move(info.value().tables.front().strings);
}

} // namespace pe
