// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/fullmodule.h"

#include "cli/language.h"
#include "preparation/preparedmodule.h"

#include <QFile>

std::variant<QString, Refusal> moduleFor(const PackOptions &options)
{
    if (options.profile != Profile::FastStart && options.keepDays == 0) {
        return ModulePlan().module;
    }
    const QString full = QStringLiteral(":/fast-start/7zS2.sfx");
    if (!QFile::exists(full)) {
        return Refusal{
            text("this build of kestrelpack-cli has no self-extractor module for --profile "
                 "fast-start and --keep")};
    }
    return full;
}
