// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/profilefolder.h"

#include "helpers/self-extractor/start/winpath.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

namespace {

constexpr DWORD pathCapacity = 32768;

} // namespace

// The variable has the same value as the shell's function for it, which needs libraries that take
// longer to load than the rest of a start.
bool findKeptFolders(Text &folder)
{
    Array<char16_t> units;
    if (!units.allocate(pathCapacity)) {
        return false;
    }
    const DWORD size = GetEnvironmentVariableW(L"LOCALAPPDATA", wide(units.data()), pathCapacity);
    if (size >= pathCapacity || !folder.assign(units.data(), size) || !isAbsolutePath(folder)) {
        return false;
    }
    if (folder.data()[folder.size() - 1] == u'\\') {
        folder.truncate(folder.size() - 1);
    }
    return folder.append(u"\\Kestrelpack");
}

} // namespace sfx
