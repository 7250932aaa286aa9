// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/fuzz/windowsnames.h"

#include <algorithm>
#include <map>
#include <regex>

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

// For matching only: what is beyond ASCII becomes a letter of its own; the superscript digits one more.
std::string forMatching(std::u16string_view text)
{
    std::string result;
    for (const char16_t unit : lowered(text)) {
        const bool superscript = unit == u'\u00b9' || unit == u'\u00b2' || unit == u'\u00b3';
        result += unit < 0x80 ? static_cast<char>(unit) : (superscript ? '7' : 'X');
    }
    return result;
}

bool isReserved(std::u16string_view name)
{
    static const std::regex devices("(con|prn|aux|nul|conin\\$|conout\\$|com[0-9]|lpt[0-9]) *");
    const std::string text = forMatching(name.substr(0, name.find(u'.')));
    // Longer names are none; the expression's engine recurses once a letter.
    return text.size() <= 255 && std::regex_match(text, devices);
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
