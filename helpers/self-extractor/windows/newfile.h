// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/memory.h"
#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// The folders in which files are being created, kept open: most files follow another one of the same
// folder. One thread uses it. The small module keeps none.
class OpenFolders
{
public:
    OpenFolders() = default;
    OpenFolders(const OpenFolders &) = delete;
    OpenFolders &operator=(const OpenFolders &) = delete;
    virtual ~OpenFolders() = default;
};

// Creates a file, which must be new, for writing; its path is in extended form. Nobody else can open
// it until its handle is closed. Returns false on failure, with the reason in GetLastError():
// ERROR_PATH_NOT_FOUND if its folder is missing. Only the full module, where newfile.cpp is linked, uses
// `folders`, which are empty at first; in the small one, newfile_none.cpp is linked.
bool createNewFile(const Text &path, Owned<OpenFolders> &folders, Handle &file);

} // namespace sfx
