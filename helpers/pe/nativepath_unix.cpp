// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/nativepath.h"

#include <cstdlib>

#include <sys/stat.h>

namespace pe {

std::string utf8Of(const NativePath &path)
{
    return path;
}

NativePath folderOf(const NativePath &path)
{
    return path.substr(0, path.rfind('/') + 1);
}

NativePath withoutLink(const NativePath &path)
{
    char *resolved = realpath(path.c_str(), nullptr);
    const NativePath found = resolved != nullptr ? resolved : path;
    std::free(resolved);
    return found;
}

bool isSameFile(const NativePath &left, const NativePath &right)
{
    struct stat one = {};
    struct stat other = {};
    return left == right
        || (stat(left.c_str(), &one) == 0 && stat(right.c_str(), &other) == 0
            && one.st_dev == other.st_dev && one.st_ino == other.st_ino);
}

} // namespace pe
