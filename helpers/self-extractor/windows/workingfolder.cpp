// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/workingfolder.h"

#include "helpers/self-extractor/start/winpath.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

bool workingFolder(const Text &folder, Text &working)
{
    if (folder.size() <= longestWorkingFolder) {
        return working.append(folder);
    }
    Text path;
    Array<char16_t> units;
    if (!toExtendedPath(folder, path) || !units.allocate(path.size() + 1)) {
        return false;
    }
    const auto capacity = static_cast<DWORD>(units.size());
    const DWORD size = GetShortPathNameW(wide(path.data()), wide(units.data()), capacity);
    if (size == 0 || size >= capacity) {
        return true; // no short names on this disk
    }
    if (!path.assign(units.data(), size) || !toPlainPath(path, working)) {
        return false;
    }
    if (working.size() > longestWorkingFolder) {
        working = Text();
    }
    return true;
}

} // namespace sfx
