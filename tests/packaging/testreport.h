// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/joblog.h"

#include <QStringList>

// Collects the reports of one stage of the job, in order: "log TEXT" and "progress 37".
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
