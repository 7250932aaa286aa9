// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/fuzz/windowsnames.h"

#include <algorithm>
#include <map>
#include <set>

namespace windowsnames {

namespace {

std::u16string lowered(std::u16string_view text)
{
    std::u16string result(text);
    for (char16_t &unit : result) {
        if (unit >= u'A' && unit <= u'Z') {
            unit = static_cast<char16_t>(unit - u'A' + u'a');
        }
    }
    return result;
}

std::set<std::u16string> reservedNames()
{
    std::set<std::u16string> names{u"con", u"prn", u"aux", u"nul", u"conin$", u"conout$"};
    for (const char16_t digit : std::u16string_view(u"0123456789\u00b9\u00b2\u00b3")) {
        names.insert(std::u16string(u"com") + digit);
        names.insert(std::u16string(u"lpt") + digit);
    }
    return names;
}

bool isReserved(std::u16string_view name)
{
    static const std::set<std::u16string> reserved = reservedNames();
    std::u16string stem = lowered(name.substr(0, name.find(u'.')));
    while (stem.ends_with(u' ')) {
        stem.pop_back();
    }
    return reserved.contains(stem);
}

} // namespace

bool isName(std::u16string_view name)
{
    if (name.empty() || name.size() > 255 || name == u"." || name == u"..") {
        return false;
    }
    if (name.back() == u'.' || name.back() == u' ') {
        return false;
    }
    const bool hasControl
        = std::any_of(name.begin(), name.end(), [](char16_t unit) { return unit < u' '; });
    return !hasControl && name.find_first_of(u"\\/:*?\"<>|") == name.npos && !isReserved(name);
}

bool isRelativePath(std::u16string_view path)
{
    if (path.size() > 30000) {
        return false;
    }
    for (std::size_t slash = 0; slash != path.npos;) {
        slash = path.find(u'/');
        if (!isName(path.substr(0, slash))) {
            return false;
        }
        path.remove_prefix(slash == path.npos ? path.size() : slash + 1);
    }
    return true;
}

bool anyCollide(const std::vector<Path> &paths)
{
    std::map<std::u16string, bool> known;
    for (const Path &path : paths) {
        if (!known.emplace(lowered(path.text), path.isFolder).second) {
            return true;
        }
    }
    for (const Path &path : paths) {
        const std::u16string text = lowered(path.text);
        for (std::size_t slash = text.find(u'/'); slash != text.npos;
             slash = text.find(u'/', slash + 1)) {
            const auto parent = known.find(text.substr(0, slash));
            if (parent != known.end() && !parent->second) {
                return true;
            }
        }
    }
    return false;
}

} // namespace windowsnames
