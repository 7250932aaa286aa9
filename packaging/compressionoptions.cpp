// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/compressionoptions.h"

#include <array>

namespace {

template <std::size_t size>
QString textAt(const std::array<const char *, size> &texts, int index, std::size_t defaultIndex)
{
    const bool listed = index >= 0 && static_cast<std::size_t>(index) < size;
    return QString::fromLatin1(texts[listed ? static_cast<std::size_t>(index) : defaultIndex]);
}

} // namespace

QString compressionLevelText(int index)
{
    // The archiver's scale is 0 to 9; the list has six named levels of it.
    return textAt(std::array{"0", "1", "3", "5", "7", "9"}, index, 3);
}

QString compressionMethodText(int index)
{
    return textAt(std::array{"LZMA", "LZMA2"}, index, 0);
}

QString dictionarySizeText(int index)
{
    return textAt(std::array{"64K", "1M", "16M", "32M", "64M"}, index, 2);
}
