// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <cstddef>

// Converts a text to upper case as Windows does when it compares file names: unit by unit, so the
// length never changes. Qt knows more letters than Windows; two names that are equal here may be
// different on Windows, but not the other way round.
inline void toFileNameUpperCase(char16_t *text, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i) {
        text[i] = QChar(text[i]).toUpper().unicode();
    }
}

inline QString fileNameUpperCase(QString name)
{
    for (QChar &unit : name) {
        unit = unit.toUpper();
    }
    return name;
}
