// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/applicationfolder.h"

namespace sfx {

namespace {

constexpr std::size_t longestPath = 259;

} // namespace

const char16_t *applicationFolderName(std::size_t rootSize, const Text &requested,
                                      const Text &program)
{
    const std::size_t size = rootSize + 1 + requested.size() + 1 + program.size();
    return size <= longestPath ? requested.data() : u"app";
}

} // namespace sfx
