// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "preparation/message.h"

#include <QString>

#include <optional>
#include <variant>

// Which times the entries of the archive get. Times are in 100 ns since 1970, UTC.
struct TimeRule
{
    // A later time becomes this one. Without a limit every entry keeps its own time.
    std::optional<qint64> limit;
    // Every time becomes the limit, also an earlier one.
    bool isFixed = false;

    qint64 applyTo(qint64 time) const;
};

// Makes the rule from the text of --mtime, the environment variable SOURCE_DATE_EPOCH
// (reproducible-builds.org) and --reproducible. An empty text is one that is missing; --mtime comes
// before the variable. A reproducible archive without a time has 2000-01-01. A time is a number of
// seconds since 1970, or for --mtime also ISO 8601, where UTC is the default. Returns what is
// wrong if a text is no time.
std::variant<TimeRule, Message> timeRuleOf(const QString &mtimeOption,
                                           const QString &sourceDateEpoch, bool reproducible);
