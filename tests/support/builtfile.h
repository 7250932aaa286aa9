// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// The path of a file or folder that a test needs: a program of the build, or data from the source
// tree. The compiler knows these paths on the machine that builds. The kit for Windows machines
// (tests/windows-kit) has copies of all of them in one folder, and names that folder in the
// environment variable KESTRELPACK_TEST_FILES. So the last parts of the paths must differ.
inline QString builtFile(const char *path)
{
    const QString built = QString::fromUtf8(path);
    const QString folder = qEnvironmentVariable("KESTRELPACK_TEST_FILES");
    return folder.isEmpty() ? built : folder + '/' + built.section('/', -1);
}
