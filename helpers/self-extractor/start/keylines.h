// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

namespace sfx {

// Lines `Key="value"`, as in the configuration block and in the settings. There is no escaping: a
// value is everything between the first and the last quote of its line.

// A part of a text, whose bytes belong to the caller.
struct Slice
{
    const char *data = nullptr; // null: there is none
    std::size_t size = 0;

    bool equals(const char *text) const;
};

// Removes the next line from `rest`. It ends with a line feed, before which a carriage return is
// left out. Returns false if there is no further line end.
bool takeLine(Slice &rest, Slice &line);

// Splits `Key="value"`. Returns false if the line is something else.
bool splitLine(const Slice &line, Slice &key, Slice &value);

enum class KeyUse { Stored, Unknown, Repeated };

// Stores `value` in `values`, at the place that `key` has in `names`. Both have `count` elements.
KeyUse storeValue(const Slice &key, const Slice &value, const char *const *names, std::size_t count,
                  Slice *values);

} // namespace sfx
