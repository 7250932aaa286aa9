// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <algorithm>

// Returns true if the text is one line of valid Unicode without control characters. A tab is
// allowed. The self-extractor refuses other texts.
inline bool isCleanText(const QString &text)
{
    return text.isValidUtf16() && std::none_of(text.begin(), text.end(), [](QChar unit) {
               return (unit < u' ' && unit != u'\t') || (unit >= QChar(0x7f) && unit < QChar(0xa0));
           });
}
