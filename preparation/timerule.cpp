// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/timerule.h"

#include <QDateTime>
#include <QRegularExpression>

namespace {

constexpr qint64 ticksInSecond = 10000000;  // of 100 ns
constexpr qint64 lastSecond = 253402300799; // 9999-12-31T23:59:59Z
constexpr qint64 defaultSecond = 946684800; // 2000-01-01T00:00:00Z

bool isNumber(const QString &text)
{
    static const QRegularExpression digits("^[0-9]+$");
    return digits.match(text).hasMatch();
}

// In seconds since 1970; nothing if the text is no time, or none that an archive should have.
std::optional<qint64> secondsOf(const QString &text, bool allowDate)
{
    // Qt is generous; these are the forms that people use.
    static const QRegularExpression iso(
        "^[0-9]{4}-[0-9]{2}-[0-9]{2}([T ][0-9]{2}:[0-9]{2}(:[0-9]{2})?(Z|[+-][0-9]{2}:[0-9]{2})?)?$");
    bool isValid = isNumber(text);
    qint64 seconds = -1;
    if (isValid) {
        seconds = text.toLongLong(&isValid);
    } else if (allowDate && iso.match(text).hasMatch()) {
        QDateTime time = QDateTime::fromString(text, Qt::ISODate);
        isValid = time.isValid();
        if (time.timeSpec() == Qt::LocalTime) { // the text names no zone
            time.setTimeSpec(Qt::UTC);
        }
        seconds = time.toSecsSinceEpoch();
    }
    return isValid && seconds >= 0 && seconds <= lastSecond ? std::optional(seconds) : std::nullopt;
}

} // namespace

qint64 TimeRule::applyTo(qint64 time) const
{
    return limit && (isFixed || time > *limit) ? *limit : time;
}

std::variant<TimeRule, Message> timeRuleOf(const QString &mtimeOption,
                                           const QString &sourceDateEpoch, bool reproducible)
{
    TimeRule rule;
    rule.isFixed = reproducible;
    if (reproducible) {
        rule.limit = defaultSecond * ticksInSecond;
    }
    if (!mtimeOption.isEmpty()) {
        const auto seconds = secondsOf(mtimeOption, true);
        if (!seconds) {
            return Message{"%1 is no time: use seconds since 1970, or a date and time such "
                           "as 2026-01-31T12:00:00Z",
                           {mtimeOption}};
        }
        rule.limit = *seconds * ticksInSecond;
    } else if (!sourceDateEpoch.isEmpty()) {
        const auto seconds = secondsOf(sourceDateEpoch, false);
        if (!seconds) {
            return Message{"the environment variable SOURCE_DATE_EPOCH is %1, which is no "
                           "number of seconds since 1970",
                           {sourceDateEpoch}};
        }
        rule.limit = *seconds * ticksInSecond;
    }
    return rule;
}
