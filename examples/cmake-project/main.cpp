// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// Prints the words of its text file and of its arguments. The exit code is the number of arguments.

#include "wordcount.h"

#include <windows.h>

#include <cstdio>
#include <string>

// The text file lies beside the program; the working folder may be another one.
static std::string packedText()
{
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), DWORD(path.size())));
    path.resize(path.find_last_of(L'\\') + 1);
    FILE *const file = _wfopen((path + L"texts\\words.txt").c_str(), L"rb");
    if (!file) {
        return {};
    }
    char bytes[4096];
    const std::string text(bytes, fread(bytes, 1, sizeof bytes, file));
    fclose(file);
    return text;
}

int main(int argc, char **argv)
{
    std::string arguments;
    for (int i = 1; i < argc; ++i) {
        arguments += std::string(argv[i]) + ' ';
    }
    std::printf("Tern: %d words in the text, %d in the arguments\n", countWords(packedText()),
                countWords(arguments));
    return argc - 1;
}
