// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/windowsname.h"

#include "helpers/self-extractor/archive/entryname.h"

namespace {

QString clauseOf(sfx::NameFault fault)
{
    switch (fault) {
    case sfx::NameFault::None:
        break;
    case sfx::NameFault::Empty:
        return QStringLiteral("a name must not be empty");
    case sfx::NameFault::TooLong:
        return QStringLiteral("on Windows a name may have at most 255 characters");
    case sfx::NameFault::Character:
        return QStringLiteral("on Windows a name must not have control characters or any of "
                              "\" * / : < > ? \\ |");
    case sfx::NameFault::SpaceOrDot:
        return QStringLiteral("on Windows a name must not end with a space or a dot");
    case sfx::NameFault::Device:
        return QStringLiteral("on Windows that is the name of a device");
    }
    return {};
}

} // namespace

QString windowsNameFault(const QString &name)
{
    const QString fault
        = clauseOf(sfx::faultOfComponent(reinterpret_cast<const char16_t *>(name.utf16()),
                                         static_cast<std::size_t>(name.size())));
    if (fault.isEmpty() && !name.isValidUtf16()) {
        return QStringLiteral("the name has half of a surrogate pair, which is no character");
    }
    return fault;
}

QString windowsPathFault(const QString &path)
{
    if (static_cast<std::size_t>(path.size()) > sfx::maxPathSize) {
        return QStringLiteral("a path may have at most %1 characters").arg(sfx::maxPathSize);
    }
    return windowsNameFault(path.section('/', -1));
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
