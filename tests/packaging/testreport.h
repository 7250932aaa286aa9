// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/joblog.h"

#include <QStringList>

// Collects what a stage of the run reports: "log TEXT" and "progress 37", in order.
class TestReport
{
public:
    JobReport report()
    {
        return {[this](const QString &text) { events << "log " + text; },
                [this](int value) {
                    events << QStringLiteral("progress %1").arg(value);
                }};
    }

    QStringList events;
};
