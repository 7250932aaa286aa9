// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/winpath.h"

namespace sfx {

bool toExtendedPath(const Text &path, Text &extended)
{
    const bool network = path.size() > 2 && path.data()[0] == u'\\' && path.data()[1] == u'\\';
    if (network && path.data()[2] == u'?') {
        return extended.assign(path.data(), path.size());
    }
    return network
        ? extended.assign(u"\\\\?\\UNC", 7) && extended.append(path.data() + 1, path.size() - 1)
        : extended.assign(u"\\\\?\\", 4) && extended.append(path);
}

bool folderOf(const Text &path, Text &folder)
{
    std::size_t size = path.size();
    while (size > 0 && path.data()[size - 1] != u'\\') {
        --size;
    }
    // "C:" without the backslash would be the drive's current folder.
    const bool isRoot = size >= 2 && path.data()[size - 2] == u':';
    return folder.assign(path.data(), size == 0 || isRoot ? size : size - 1);
}

} // namespace sfx
