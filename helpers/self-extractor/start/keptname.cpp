// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/keptname.h"

#include "helpers/self-extractor/start/hexadecimal.h"
#include "helpers/self-extractor/start/pathindex.h"

#include <cstring>

namespace sfx {

namespace {

// Another number whenever a module would lay out the folder in another way.
constexpr std::uint64_t layout = 1;

// Numbers are hashed as they lie in the memory of all our machines, the least significant byte first.
void addNumber(Sha256 &hash, std::uint64_t number)
{
    hash.add(&number, sizeof number);
}

// The length first: no two lists of texts give the same bytes.
void addText(Sha256 &hash, const char16_t *text, std::size_t size)
{
    addNumber(hash, size);
    hash.add(text, size * sizeof(char16_t));
}

// The path's own hash is computed several times as fast as this one.
void addEntry(Sha256 &hash, const Entry &entry, std::uint32_t crc)
{
    const std::uint64_t kind = (entry.isFolder ? 1u : 0u) | (entry.hasModified ? 2u : 0u);
    const std::uint64_t facts = (std::uint64_t{crc} << 32) | entry.attributes;
    const std::uint64_t path = hashPath(emptyPathHash, entry.path, entry.pathSize);
    const std::uint64_t numbers[] = {path, entry.size, entry.modified, facts, kind};
    hash.add(numbers, sizeof numbers);
}

} // namespace

Status identifyContent(Archive &archive, const StartPlan &plan, Digest &digest)
{
    const CSzArEx &tables = archive.tables();
    Sha256 hash;
    addNumber(hash, layout);
    addNumber(hash, plan.settings.keepDays);
    addText(hash, plan.settings.product.data(), plan.settings.product.size());
    addText(hash, plan.folderName().data(), plan.folderName().size());
    for (std::uint32_t i = 0; i < archive.entryCount(); ++i) {
        Entry entry;
        const Status status = archive.entry(i, entry);
        if (status != Status::Ok) {
            return status;
        }
        addEntry(hash, entry,
                 SzBitWithVals_Check(&tables.CRCs, i) ? tables.CRCs.Vals[i] : std::uint32_t{0});
    }
    for (std::uint32_t i = 0; i < tables.db.NumPackStreams; ++i) {
        addNumber(hash, tables.db.PackPositions[i + 1] - tables.db.PackPositions[i]);
    }
    hash.finish(digest);
    return Status::Ok;
}

void identifyProduct(const Settings &settings, Digest &digest)
{
    std::memset(digest, 0, sizeof digest);
    if (!settings.product.isEmpty()) {
        Sha256 hash;
        addText(hash, settings.product.data(), settings.product.size());
        hash.finish(digest);
    }
}

bool makeKeptName(const Digest &digest, Text &name)
{
    name = Text();
    return appendHexadecimal(name, digest, sizeof digest);
}

bool isKeptLockName(const char16_t *name)
{
    return isHexadecimalName(name, u"", 2 * sizeof(Digest), keptLockSuffix);
}

} // namespace sfx
