// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>

// One message of this program, and its Chinese translation, with placeholders.
struct MessageText
{
    const char *english = "";
    const char *chinese = "";
};

const QList<MessageText> &messageTexts();
