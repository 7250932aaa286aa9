// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/glob.h"

#include <QStringList>

namespace {

// Finds whether `pattern` matches all of `items`. A wildcard, for which `isWildcard` returns true,
// matches any number of items. Only the last wildcard has to be tried again, so the time is at most
// the product of the two lengths.
template <typename Pattern, typename Items, typename IsWildcard, typename Matches>
bool matchesAll(const Pattern &pattern, const Items &items, IsWildcard isWildcard, Matches matches)
{
    qsizetype at = 0;
    qsizetype item = 0;
    qsizetype wildcard = -1;
    qsizetype retry = 0;
    while (item < items.size()) {
        if (at < pattern.size() && isWildcard(pattern[at])) {
            wildcard = at++;
            retry = item;
        } else if (at < pattern.size() && matches(pattern[at], items[item])) {
            ++at;
            ++item;
        } else if (wildcard >= 0) {
            at = wildcard + 1;
            item = ++retry;
        } else {
            return false;
        }
    }
    while (at < pattern.size() && isWildcard(pattern[at])) {
        ++at;
    }
    return at == pattern.size();
}

} // namespace

std::variant<Glob, Message> Glob::parse(const QString &text)
{
    Glob glob;
    glob.m_text = text;
    QString path = text;
    path.replace('\\', '/');
    if (path.isEmpty()) {
        return Message{"an empty pattern excludes nothing"};
    }
    glob.m_foldersOnly = path.endsWith('/');
    if (glob.m_foldersOnly) {
        path.chop(1);
    }
    const bool isFromRoot = path.contains('/');
    if (path.startsWith('/')) {
        path.remove(0, 1);
    }
    if (!isFromRoot) {
        glob.m_names.append(Name{true, {}});
    }
    for (const QString &name : path.split('/')) {
        if (const auto error = glob.readName(name)) {
            return *error;
        }
    }
    if (glob.m_names.constLast().isAnyFolders) {
        // `docs/**` chooses everything in the folder, but not the folder itself.
        glob.readName(u"*");
    }
    return glob;
}

std::optional<Message> Glob::readName(QStringView text)
{
    if (text.isEmpty()) {
        return Message{"the pattern %1 is broken: there is no name beside a /", {m_text}};
    }
    if (text == u"." || text == u"..") {
        return Message{
            "the pattern %1 is broken: paths begin at the folder to pack, without . and ..",
            {m_text}};
    }
    Name name;
    name.isAnyFolders = text == u"**";
    for (qsizetype i = 0; !name.isAnyFolders && i < text.size(); ++i) {
        Token token;
        const QChar unit = text[i];
        if (unit == '*') {
            if (i > 0 && text[i - 1] == '*') {
                return Message{"the pattern %1 is broken: ** must stand alone between two /",
                               {m_text}};
            }
            token.kind = Token::Kind::AnyUnits;
        } else if (unit == '?') {
            token.kind = Token::Kind::AnyUnit;
        } else if (unit == '[') {
            if (auto error = readClass(text, i, token)) {
                return error;
            }
        } else {
            token.unit = unit.toUpper().unicode();
        }
        name.tokens.append(token);
    }
    m_names.append(name);
    return std::nullopt;
}

// Reads `[...]`; `position` moves from its first to its last unit. A `]` at its beginning stands for
// itself.
std::optional<Message> Glob::readClass(QStringView text, qsizetype &position, Token &token) const
{
    token.kind = Token::Kind::Class;
    qsizetype i = position + 1;
    token.isNegated = i < text.size() && (text[i] == '!' || text[i] == '^');
    i += token.isNegated ? 1 : 0;
    const qsizetype first = i;
    while (i < text.size() && (text[i] != ']' || i == first)) {
        const char16_t from = text[i].unicode();
        char16_t to = from;
        if (i + 2 < text.size() && text[i + 1] == '-' && text[i + 2] != ']') {
            to = text[i + 2].unicode();
            i += 2;
        }
        if (to < from) {
            return Message{"the pattern %1 is broken: the range %2-%3 is in the wrong order",
                           {m_text, QChar(from), QChar(to)}};
        }
        token.ranges.append({from, to});
        ++i;
    }
    if (i >= text.size()) {
        return Message{"the pattern %1 is broken: a [ has no ]", {m_text}};
    }
    position = i;
    return std::nullopt;
}

bool Glob::tokenMatches(const Token &token, QChar unit)
{
    switch (token.kind) {
    case Token::Kind::Unit:
        return unit.toUpper().unicode() == token.unit;
    case Token::Kind::AnyUnit:
        return true;
    case Token::Kind::AnyUnits:
        break;
    case Token::Kind::Class:
        for (const char16_t form :
             {unit.unicode(), unit.toUpper().unicode(), unit.toLower().unicode()}) {
            for (const auto &[from, to] : token.ranges) {
                if (form >= from && form <= to) {
                    return !token.isNegated;
                }
            }
        }
        return token.isNegated;
    }
    return false;
}

bool Glob::nameMatches(const Name &name, QStringView text)
{
    return matchesAll(
        name.tokens, text, [](const Token &token) { return token.kind == Token::Kind::AnyUnits; },
        tokenMatches);
}

bool Glob::matches(const QString &path, bool isFolder) const
{
    if (m_foldersOnly && !isFolder) {
        return false;
    }
    return matchesAll(
        m_names, QStringView(path).split('/'), [](const Name &name) { return name.isAnyFolders; },
        nameMatches);
}
