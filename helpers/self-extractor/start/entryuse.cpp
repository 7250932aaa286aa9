// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/entryuse.h"

namespace sfx {

namespace {

// ntstatus.h, which does not go together with windows.h.
constexpr std::uint32_t firstWarning = 0x80000000;
constexpr std::uint32_t accessDenied = 0xc0000022;
constexpr std::uint32_t nameNotFound = 0xc0000034;
constexpr std::uint32_t pathNotFound = 0xc000003a;
constexpr std::uint32_t deletePending = 0xc0000056;
constexpr std::uint32_t isAFolder = 0xc00000ba;
constexpr std::uint32_t notAFolder = 0xc0000103;

} // namespace

EntryUse useByOpening(std::uint32_t status)
{
    switch (status) {
    case nameNotFound:
    case pathNotFound:
    case deletePending:
        return EntryUse::Gone;
    case accessDenied:
    case isAFolder:
    case notAFolder:
        return EntryUse::NotForUs;
    default:
        return status < firstWarning ? EntryUse::Free : EntryUse::InUse;
    }
}

bool isProgramName(const char16_t *name, std::size_t size)
{
    if (size < 4 || name[size - 4] != u'.') {
        return false;
    }
    char16_t lower[3];
    for (std::size_t i = 0; i < 3; ++i) {
        const char16_t unit = name[size - 3 + i];
        lower[i] = unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
    }
    const auto is = [&lower](const char16_t *extension) {
        return lower[0] == extension[0] && lower[1] == extension[1] && lower[2] == extension[2];
    };
    return is(u"exe") || is(u"dll");
}

} // namespace sfx
