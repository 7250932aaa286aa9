// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/windowsname.h"

#include "helpers/self-extractor/archive/entryname.h"

namespace {

const char *sentenceOf(sfx::NameFault fault)
{
    switch (fault) {
    case sfx::NameFault::None:
        break;
    case sfx::NameFault::Empty:
        return "%1 cannot be packed: a name must not be empty";
    case sfx::NameFault::TooLong:
        return "%1 cannot be packed: on Windows a name may have at most 255 characters";
    case sfx::NameFault::Character:
        return "%1 cannot be packed: on Windows a name must not have control characters or any of "
               "\" * / : < > ? \\ |";
    case sfx::NameFault::SpaceOrDot:
        return "%1 cannot be packed: on Windows a name must not end with a space or a dot";
    case sfx::NameFault::Device:
        return "%1 cannot be packed: on Windows that is the name of a device";
    }
    return nullptr;
}

} // namespace

std::optional<Message> windowsNameProblem(const QString &path)
{
    const QString name = path.section('/', -1);
    const QString shown = shownPath(path);
    if (static_cast<std::size_t>(path.size()) > sfx::maxPathSize) {
        return Message{"%1 cannot be packed: a path may have at most %2 characters",
                       {shown, QString::number(sfx::maxPathSize)}};
    }
    const char *sentence
        = sentenceOf(sfx::faultOfComponent(reinterpret_cast<const char16_t *>(name.utf16()),
                                           static_cast<std::size_t>(name.size())));
    if (sentence != nullptr) {
        return Message{sentence, {shown}};
    }
    if (!name.isValidUtf16()) {
        return Message{"%1 cannot be packed: its name has half of a surrogate pair, which is no "
                       "character",
                       {shown}};
    }
    return std::nullopt;
}

QString shownPath(const QString &path)
{
    QString shown;
    for (const QChar unit : path) {
        if (unit.category() == QChar::Other_Control) {
            shown += QStringLiteral("\\x%1").arg(unit.unicode(), 2, 16, QLatin1Char('0'));
        } else {
            shown += unit;
        }
    }
    return shown;
}
