// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

// An English sentence for the user, without a full stop. The values belong at its placeholders %1,
// %2, ... They are kept apart, so that a program can look the sentence up in another language.
struct Message
{
    const char *sentence = "";
    QStringList values;
};

// The sentence, or its translation, with the values.
inline QString textOf(const Message &message, const QString &sentence)
{
    QString text = sentence;
    for (const QString &value : message.values) {
        text = text.arg(value);
    }
    return text;
}

inline QString textOf(const Message &message)
{
    return textOf(message, QString::fromUtf8(message.sentence));
}
