// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

#ifdef WORDCOUNT_IS_BUILT
#define WORDCOUNT_API __declspec(dllexport)
#else
#define WORDCOUNT_API __declspec(dllimport)
#endif

// The number of words in the text.
WORDCOUNT_API int countWords(const std::string &text);
