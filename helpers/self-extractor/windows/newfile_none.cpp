// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/newfile.h"

namespace sfx {

bool createNewFile(const Text &path, Owned<OpenFolders> &, Handle &file)
{
    file.reset(CreateFileW(wide(path.data()), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                           FILE_ATTRIBUTE_NORMAL, nullptr));
    return static_cast<bool>(file);
}

} // namespace sfx
