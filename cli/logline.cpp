// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/logline.h"

#include "cli/enginetexts.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace {

// A line that ends with a value begins with the text before the placeholder.
bool isMadeFrom(const QString &line, const QString &text)
{
    const qsizetype placeholder = text.indexOf("%1");
    return placeholder < 0 ? line.startsWith(text) : line.startsWith(text.left(placeholder));
}

const EngineText *engineTextOf(const QString &line)
{
    const auto &texts = engineTexts();
    const auto found = std::find_if(texts.begin(), texts.end(), [&line](const EngineText &text) {
        return isMadeFrom(line, QString::fromUtf8(text.chinese))
            || isMadeFrom(line, QString::fromLatin1(text.english));
    });
    return found == texts.end() ? nullptr : &*found;
}

// Writes over what is there after the cursor has gone back.
QString afterBackspaces(const QString &line)
{
    QString shown;
    qsizetype cursor = 0;
    for (const QChar c : line) {
        if (c == '\b') {
            cursor = qMax<qsizetype>(0, cursor - 1);
        } else if (c == '\r') {
            cursor = 0;
        } else {
            shown.replace(cursor, 1, c);
            ++cursor;
        }
    }
    while (shown.endsWith(' ')) {
        shown.chop(1);
    }
    return shown;
}

bool isProgress(const QString &line)
{
    static const QRegularExpression progress(QStringLiteral(R"(^ *(\d{1,3}%|\d+M Scan)( |$))"));
    return progress.match(line).hasMatch();
}

} // namespace

LogLineKind kindOfLogLine(const QString &line)
{
    const EngineText *const text = engineTextOf(line);
    return text ? text->kind : LogLineKind::Information;
}

JobStage stageBegunBy(const QString &line)
{
    const EngineText *const text = engineTextOf(line);
    return text ? text->begins : JobStage::Unchanged;
}

QString withoutProgress(const QString &text)
{
    QStringList lines = text.split('\n');
    bool changed = false;
    for (QString &line : lines) {
        const bool hasCursor = line.contains('\b') || line.contains('\r');
        const QString shown = hasCursor ? afterBackspaces(line) : line;
        changed = changed || hasCursor || isProgress(shown);
        line = isProgress(shown) ? QString() : shown;
    }
    return changed ? lines.join('\n').trimmed() : text;
}
