// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <string_view>

// A path that the compiler gets from the build, for example that of a program for a test. The test
// programs for Windows are part of a release, whose bytes must be the same from every folder. So
// their build defines KESTRELPACK_TEST_TOP, the top folder of the source tree, and the compiler
// leaves that beginning out of the path.
class BuiltPath
{
public:
    consteval BuiltPath(const char *path)
    {
        std::string_view text = path;
#ifdef KESTRELPACK_TEST_TOP
        constexpr std::string_view top = KESTRELPACK_TEST_TOP "/";
        if (text.starts_with(top)) {
            text.remove_prefix(top.size());
        }
#endif
        text.copy(m_text, sizeof(m_text) - 1);
        if (text.size() >= sizeof(m_text)) {
            throw "the path is too long"; // not in the program: the compiler says so
        }
    }
    const char *text() const
    {
        return m_text;
    }

private:
    char m_text[400]{};
};

// The path of a file or folder that a test needs: a program of the build, or data from the source
// tree. The tests of a build for Windows get the top folder from CTest, in the environment variable
// KESTRELPACK_TEST_TOP. The kit for Windows machines (tests/windows-kit) has copies of all files in
// one folder, and names that folder in KESTRELPACK_TEST_FILES. So the last parts of the paths must
// differ.
inline QString builtFile(const BuiltPath &path)
{
    const QString built = QString::fromUtf8(path.text());
    const QString folder = qEnvironmentVariable("KESTRELPACK_TEST_FILES");
    if (!folder.isEmpty()) {
        return folder + '/' + built.section('/', -1);
    }
    return built.startsWith('/') || built.contains(':')
        ? built
        : qEnvironmentVariable("KESTRELPACK_TEST_TOP") + '/' + built;
}
