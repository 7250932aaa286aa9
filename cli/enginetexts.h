// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/logline.h"

#include <QList>

// One text of the engine's log: the source text (Chinese) and its translation, with placeholders.
struct EngineText
{
    const char *chinese = "";
    const char *english = "";
    LogLineKind kind = LogLineKind::Information;
    JobStage begins = JobStage::Unchanged; // the stage that begins with this line
};

const QList<EngineText> &engineTexts();
