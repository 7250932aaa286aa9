// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/headerpacking.h"

#include <cstdlib>

#include "7zCrc.h"
#include "LzmaEnc.h"

namespace fast {

namespace {

void *allocate(ISzAllocPtr, size_t size)
{
    return std::malloc(size);
}

void release(ISzAllocPtr, void *address)
{
    std::free(address);
}

constexpr ISzAlloc allocator = {allocate, release};

} // namespace

std::optional<PackedHeader> packHeader(pe::ByteView header)
{
    CLzmaEncProps settings;
    LzmaEncProps_Init(&settings);
    settings.reduceSize = header.size();
    PackedHeader packed;
    packed.unpackedSize = header.size();
    packed.unpackedCheckSum = CrcCalc(header.data(), header.size());
    packed.bytes.resize(header.size());
    SizeT size = packed.bytes.size();
    SizeT propertiesSize = packed.properties.size();
    const SRes result = LzmaEncode(packed.bytes.data(), &size, header.data(), header.size(),
                                   &settings, packed.properties.data(), &propertiesSize, 0, nullptr,
                                   &allocator, &allocator);
    if (result != SZ_OK) { // also if the header does not become smaller
        return std::nullopt;
    }
    packed.bytes.resize(size);
    return packed;
}

} // namespace fast
