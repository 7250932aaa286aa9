// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/keptpaths.h"

#include "helpers/self-extractor/start/applicationfolder.h"
#include "helpers/self-extractor/start/keptname.h"
#include "helpers/self-extractor/start/winpath.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

namespace {

[[nodiscard]] bool join(Text &path, const Text &folder, const Text &name)
{
    return path.append(folder) && path.append(u"\\") && path.append(name);
}

[[nodiscard]] bool putBeside(Text &path, const Text &root, const char16_t *suffix)
{
    return path.append(root) && path.append(suffix);
}

} // namespace

bool pathExists(const Text &path)
{
    return GetFileAttributesW(wide(path.data())) != INVALID_FILE_ATTRIBUTES;
}

bool KeptFiles::make(const Text &base, const char16_t *name, std::size_t nameSize)
{
    return root.append(base) && root.append(u"\\") && root.append(name, nameSize)
        && putBeside(fresh, root, keptNewSuffix) && putBeside(lock, root, keptLockSuffix)
        && putBeside(use, root, keptUseSuffix);
}

bool KeptPaths::make(const Text &folder, const Text &requested, const Text &program)
{
    Text plain;
    return toExtendedPath(folder, base) && KeptFiles::make(base, name.data(), name.size())
        && join(plain, folder, name)
        && folderName.append(applicationFolderName(plain.size(), requested, program))
        && join(application, plain, folderName) && join(inside, root, folderName);
}

} // namespace sfx
