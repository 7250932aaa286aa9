// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/productcheck.h"

#include "cli/language.h"
#include "inspection/contentcheck.h"

QString checkProduct(const QString &path, bool content)
{
    ProducedFile file;
    if (const QString reason = file.open(path); !reason.isEmpty()) {
        return reason;
    }
    auto finding = file.check();
    if (!finding && content) {
        finding = checkContent(file);
    }
    return finding
        ? QStringLiteral("%1 (%2)").arg(textOfFinding(finding->text)).arg(finding->number)
        : QString();
}

bool canCheckProducts()
{
    return true;
}
