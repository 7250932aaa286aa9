// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"

namespace sfx {

// The paths of a kept folder and of what lies beside it, in extended form.
struct KeptFiles
{
    Text root;  // the kept folder
    Text fresh; // the folder that it is made in
    Text lock;  // its lock file
    Text use;   // the file with its record

    // `base` is the folder that all kept ones lie in. Returns false if there is not enough memory.
    [[nodiscard]] bool make(const Text &base, const char16_t *name, std::size_t nameSize);
};

// The same for the kept folder of this start.
struct KeptPaths : KeptFiles
{
    Text name;        // of the kept folder
    Text base;        // the folder that all kept ones lie in
    Text inside;      // the application's folder
    Text application; // the same, as programs know it
    Text folderName;  // of the application's folder

    // `folder` is `base`, as programs know it. The application's folder gets the name `requested`, or
    // a short one if the path of `program` would be too long. Returns false if there is not enough
    // memory.
    [[nodiscard]] bool make(const Text &folder, const Text &requested, const Text &program);
};

// Whether something has this path, which is in extended form.
bool pathExists(const Text &path);

} // namespace sfx
