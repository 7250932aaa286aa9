// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "wordcount.h"

#include <sstream>

int countWords(const std::string &text)
{
    std::istringstream stream(text);
    std::string word;
    int count = 0;
    while (stream >> word) {
        ++count;
    }
    return count;
}
