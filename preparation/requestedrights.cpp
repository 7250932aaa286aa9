// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/requestedrights.h"

#include <QXmlStreamReader>

bool asksForRights(const QByteArray &manifest)
{
    QXmlStreamReader xml(manifest);
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement() || xml.name() != QLatin1String("requestedExecutionLevel")) {
            continue;
        }
        const QXmlStreamAttributes attributes = xml.attributes();
        const auto level = attributes.value(QLatin1String("level"));
        const auto uiAccess = attributes.value(QLatin1String("uiAccess"));
        return level.compare(QLatin1String("requireAdministrator"), Qt::CaseInsensitive) == 0
            || level.compare(QLatin1String("highestAvailable"), Qt::CaseInsensitive) == 0
            || uiAccess.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0;
    }
    return false;
}
