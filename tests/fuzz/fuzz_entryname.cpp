// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/archive/entryname.h"
#include "helpers/self-extractor/archive/pathset.h"
#include "tests/fuzz/checkingsink.h"
#include "tests/fuzz/require.h"
#include "tests/fuzz/windowsnames.h"

using namespace sfx;

namespace {

std::vector<std::u16string> piecesOf(const std::uint8_t *data, std::size_t size)
{
    std::vector<std::u16string> pieces(1);
    for (std::size_t i = 0; i + 1 < size; i += 2) {
        const auto unit = static_cast<char16_t>(data[i] | (data[i + 1] << 8));
        if (unit == 0) {
            pieces.emplace_back();
        } else {
            pieces.back() += unit;
        }
    }
    return pieces;
}

} // namespace

// Names of entries in UTF-16, with a zero between them. A slash at the end means a folder.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    std::vector<windowsnames::Path> paths;
    std::size_t units = 0;
    for (std::u16string &piece : piecesOf(data, size)) {
        require(isSafePath(piece.data(), piece.size()) == windowsnames::isRelativePath(piece),
                "a path is allowed exactly if it stays below its folder");
        require(isSafeComponent(piece.data(), piece.size()) == windowsnames::isName(piece),
                "a name is allowed exactly if Windows can hold it");
        const bool isFolder = piece.ends_with(u'/');
        piece.resize(piece.size() - (isFolder ? 1 : 0));
        if (isSafePath(piece.data(), piece.size())) {
            units += piece.size();
            paths.push_back({std::move(piece), isFolder});
        }
    }
    PathSet set(upperCaseAscii);
    require(set.allocate(paths.size(), units), "there is memory");
    for (const windowsnames::Path &path : paths) {
        set.add(path.text.data(), path.text.size(), path.isFolder);
    }
    require(set.collides() == windowsnames::anyCollide(paths),
            "paths collide exactly if Windows takes two for one");
    return 0;
}
