// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/archiveroutput.h"

#include <QRegularExpression>

std::optional<int> firstPercentage(const QString &chunk)
{
    const QRegularExpression expression(QStringLiteral("(\\d+)%"));
    const QRegularExpressionMatch match = expression.match(chunk);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    return match.captured(1).toInt();
}

QString archiverErrorText(const QByteArray &standardError, const QByteArray &standardOutput)
{
    return QString::fromLocal8Bit(standardError.isEmpty() ? standardOutput : standardError);
}
