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
    QStringList values = {}; // at most three
};

// The sentence, or its translation, with the values.
inline QString textOf(const Message &message, const QString &sentence)
{
    // All at once: a value may contain "%2".
    switch (message.values.size()) {
    case 0:
        return sentence;
    case 1:
        return sentence.arg(message.values[0]);
    case 2:
        return sentence.arg(message.values[0], message.values[1]);
    default:
        return sentence.arg(message.values[0], message.values[1], message.values[2]);
    }
}

inline QString textOf(const Message &message)
{
    return textOf(message, QString::fromUtf8(message.sentence));
}
