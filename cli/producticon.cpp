// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/producticon.h"

#include "cli/language.h"
#include "icons/iconvalidation.h"
#include "preparation/programicon.h"

#include <QFile>

ProductIcon keepProductIcon(const QString &executable, const QString &icon)
{
    QFile file(icon);
    if (icon.isEmpty() || !file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QByteArray content = file.readAll();
    const auto noLog = [](const QString &) {
    };
    // The self-extractor module has no icon. So if the executable has one, the job has set it.
    if (!isUsableIcon(content, noLog) || !iconFileOfProgram(executable).isEmpty()) {
        return {};
    }
    const auto problem = setIconOfProgram(executable, content);
    return problem ? ProductIcon{false, text(*problem)} : ProductIcon{true, {}};
}
