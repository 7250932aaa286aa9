// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/archive/archive.h"
#include "helpers/self-extractor/base/memory.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// Closes complete files, with their time and attributes, in other threads if that is slow: virus
// scanners look into a new file while it is closed.
class FileCloser
{
public:
    FileCloser() = default;
    FileCloser(const FileCloser &) = delete;
    FileCloser &operator=(const FileCloser &) = delete;
    virtual ~FileCloser() = default;

    // Any thread may call it. Blocks while too many files are waiting.
    virtual void close(Handle &file, const Entry &entry) = 0;
    // Returns when all files are closed. Call it after the last close().
    virtual void finish() = 0;
};

// Empty if the caller has to close the files: if there is not enough memory, and in the small module,
// where filecloser_none.cpp is linked instead of filecloser.cpp.
Owned<FileCloser> makeFileCloser();

} // namespace sfx
