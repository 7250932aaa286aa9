// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/keylines.h"

#include <cstring>

namespace sfx {

bool Slice::equals(const char *text) const
{
    return size == std::strlen(text) && std::memcmp(data, text, size) == 0;
}

bool takeLine(Slice &rest, Slice &line)
{
    const void *found = rest.size == 0 ? nullptr : std::memchr(rest.data, '\n', rest.size);
    if (found == nullptr) {
        return false;
    }
    const char *end = static_cast<const char *>(found);
    line.data = rest.data;
    line.size = static_cast<std::size_t>(end - rest.data);
    rest.data = end + 1;
    rest.size -= line.size + 1;
    if (line.size != 0 && line.data[line.size - 1] == '\r') {
        --line.size;
    }
    return true;
}

bool splitLine(const Slice &line, Slice &key, Slice &value)
{
    const void *found = line.size == 0 ? nullptr : std::memchr(line.data, '=', line.size);
    if (found == nullptr) {
        return false;
    }
    key.data = line.data;
    key.size = static_cast<std::size_t>(static_cast<const char *>(found) - line.data);
    const std::size_t open = key.size + 1;
    if (line.size < open + 2 || line.data[open] != '"' || line.data[line.size - 1] != '"') {
        return false;
    }
    value.data = line.data + open + 1;
    value.size = line.size - open - 2;
    return true;
}

KeyUse storeValue(const Slice &key, const Slice &value, const char *const *names, std::size_t count,
                  Slice *values)
{
    for (std::size_t i = 0; i < count; ++i) {
        if (!key.equals(names[i])) {
            continue;
        }
        if (values[i].data != nullptr) {
            return KeyUse::Repeated;
        }
        values[i] = value;
        return KeyUse::Stored;
    }
    return KeyUse::Unknown;
}

} // namespace sfx
