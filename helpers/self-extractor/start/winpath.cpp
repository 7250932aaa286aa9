// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/winpath.h"

#include <cstring>

namespace sfx {

namespace {

bool beginsWith(const Text &text, const char16_t *prefix)
{
    const std::size_t size = textLength(prefix);
    return text.size() >= size && std::memcmp(text.data(), prefix, size * sizeof(char16_t)) == 0;
}

bool isSeparator(char16_t unit)
{
    return unit == u'\\' || unit == u'/';
}

char16_t lowerCase(char16_t unit)
{
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

bool areEqual(const char16_t *left, const char16_t *right, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i) {
        if (lowerCase(left[i]) != lowerCase(right[i])) {
            return false;
        }
    }
    return true;
}

// Whether a folder's name that ends before this unit ends there in a command line too.
bool endsName(char16_t unit)
{
    return isSeparator(unit) || unit == 0 || unit == u' ' || unit == u'"' || unit == u'\''
        || unit == u';' || unit == u',';
}

} // namespace

bool toExtendedPath(const Text &path, Text &extended)
{
    const bool network = path.size() > 2 && path.data()[0] == u'\\' && path.data()[1] == u'\\';
    if (network && path.data()[2] == u'?') {
        return extended.assign(path.data(), path.size());
    }
    return network
        ? extended.assign(u"\\\\?\\UNC", 7) && extended.append(path.data() + 1, path.size() - 1)
        : extended.assign(u"\\\\?\\", 4) && extended.append(path);
}

bool folderOf(const Text &path, Text &folder)
{
    std::size_t size = path.size();
    while (size > 0 && path.data()[size - 1] != u'\\') {
        --size;
    }
    // "C:" without the backslash would be the drive's current folder.
    const bool isRoot = size >= 2 && path.data()[size - 2] == u':';
    return folder.assign(path.data(), size == 0 || isRoot ? size : size - 1);
}

bool appendArchivePath(Text &path, const char16_t *archivePath, std::size_t size)
{
    const std::size_t begin = path.size();
    if (!path.append(archivePath, size)) {
        return false;
    }
    auto *units = const_cast<char16_t *>(path.data());
    for (std::size_t i = begin; i < path.size(); ++i) {
        if (units[i] == u'/') {
            units[i] = u'\\';
        }
    }
    return true;
}

const char16_t *fileNameOf(const Text &path)
{
    std::size_t begin = path.size();
    while (begin > 0 && !isSeparator(path.data()[begin - 1])) {
        --begin;
    }
    return path.data() + begin;
}

bool toPlainPath(const Text &extended, Text &path)
{
    if (beginsWith(extended, u"\\\\?\\UNC\\")) {
        return path.assign(u"\\", 1) && path.append(extended.data() + 7, extended.size() - 7);
    }
    const bool hasDrive = extended.size() > 5 && extended.data()[5] == u':';
    const std::size_t prefix = hasDrive && beginsWith(extended, u"\\\\?\\") ? 4 : 0;
    return path.assign(extended.data() + prefix, extended.size() - prefix);
}

bool pointsInto(const Text &text, const Text &folder)
{
    const char16_t *name = fileNameOf(folder);
    const std::size_t size = textLength(name);
    for (std::size_t begin = 1; size != 0 && begin + size <= text.size(); ++begin) {
        if (isSeparator(text.data()[begin - 1]) && endsName(text.data()[begin + size])
            && areEqual(text.data() + begin, name, size)) {
            return true;
        }
    }
    return false;
}

} // namespace sfx
