// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/resourcetree.h"

#include <algorithm>

namespace pe {

namespace {

ResourceKey inCapitals(const ResourceKey &key)
{
    ResourceKey capitals = key;
    if (capitals.name) {
        capitals.name = upperCased(*capitals.name);
    }
    return capitals;
}

ResourceEntry directoryEntry(const ResourceKey &key)
{
    ResourceEntry entry;
    entry.key = inCapitals(key);
    entry.directory = std::make_unique<ResourceDirectory>();
    entry.directory->header.assign(12, 0);
    return entry;
}

} // namespace

void insertEntry(ResourceDirectory &directory, ResourceEntry entry)
{
    directory.entries.push_back(std::move(entry));
    std::stable_sort(directory.entries.begin(), directory.entries.end(),
                     [](const ResourceEntry &left, const ResourceEntry &right) {
                         return sortsBefore(left.key, right.key);
                     });
}

bool removeEntry(ResourceDirectory &directory, const ResourceKey &key)
{
    const auto removed = std::erase_if(directory.entries, [&](const ResourceEntry &entry) {
        return !sortsBefore(entry.key, key) && !sortsBefore(key, entry.key);
    });
    return removed != 0;
}

ResourceDirectory &directoryOf(ResourceDirectory &parent, const ResourceKey &key)
{
    ResourceEntry *entry = findEntry(parent, key);
    if (entry == nullptr || !entry->directory) {
        removeEntry(parent, key);
        insertEntry(parent, directoryEntry(key));
        entry = findEntry(parent, key);
    }
    return *entry->directory;
}

void setResource(ResourceTree &tree, const ResourceKey &type, const ResourceKey &name,
                 std::uint16_t language, Bytes content)
{
    ResourceDirectory &languages = directoryOf(directoryOf(tree.root, type), name);
    ResourceEntry entry;
    entry.key.id = language;
    entry.data.size = static_cast<std::uint32_t>(content.size());
    entry.data.newContent = std::move(content);
    removeEntry(languages, entry.key);
    insertEntry(languages, std::move(entry));
}

bool removeResource(ResourceTree &tree, const ResourceKey &type, const ResourceKey &name,
                    std::uint16_t language)
{
    ResourceEntry *names = findEntry(tree.root, type);
    ResourceEntry *languages
        = names != nullptr && names->directory ? findEntry(*names->directory, name) : nullptr;
    if (languages == nullptr || !languages->directory
        || !removeEntry(*languages->directory, {std::nullopt, language})) {
        return false;
    }
    if (languages->directory->entries.empty()) {
        removeEntry(*names->directory, name);
    }
    if (names->directory->entries.empty()) {
        removeEntry(tree.root, type);
    }
    return true;
}

} // namespace pe
