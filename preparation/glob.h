// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "preparation/message.h"

#include <QList>
#include <QString>

#include <optional>
#include <variant>

// A pattern that chooses files and folders of the folder to pack:
//
//   *.pdb       a name at any depth: there is no `/` before the pattern's last name
//   .git/       with `/` at the end: folders only
//   docs/*.md   a path from the folder's root; so does a `/` at the beginning: /readme.txt
//   a/**/b      `**` between two `/` stands for any number of folders, also for none
//   * ? [a-z] [!a-z]   any characters of one name, one character, one of or not of the listed ones
//
// `\` means `/`. Upper and lower case are the same, as in Windows' names.
class Glob
{
public:
    // Reads a pattern. Returns what is wrong if it is broken.
    static std::variant<Glob, Message> parse(const QString &text);

    // The pattern as the user wrote it.
    const QString &text() const { return m_text; }
    // Whether the pattern chooses the folder or file with that path: relative, with `/` between its
    // names. What a chosen folder contains is not matched by itself.
    bool matches(const QString &path, bool isFolder) const;

private:
    struct Token
    {
        enum class Kind { Unit, AnyUnit, AnyUnits, Class };
        Kind kind = Kind::Unit;
        char16_t unit = 0;      // in upper case; only of Unit
        bool isNegated = false; // the rest only of Class
        QList<std::pair<char16_t, char16_t>> ranges;
    };
    struct Name
    {
        bool isAnyFolders = false; // the pattern `**`
        QList<Token> tokens;
    };

    std::optional<Message> readName(QStringView text);
    std::optional<Message> readClass(QStringView text, qsizetype &position, Token &token) const;
    static bool tokenMatches(const Token &token, QChar unit);
    static bool nameMatches(const Name &name, QStringView text);

    QString m_text;
    QList<Name> m_names;
    bool m_foldersOnly = false;
};
