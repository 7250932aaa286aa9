// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <functional>

// What became of the executable's icon.
struct ProductIcon
{
    bool wasAdded = false; // it was missing
    QString problem;       // why it is still missing, as one sentence; empty if all is well
};

// Sees to it that the executable has the icon of the file `icon`; an empty path asks for nothing.
using IconKeeper = std::function<ProductIcon(const QString &executable, const QString &icon)>;

// Does so. The engine gives its resource editor a few seconds and does not look at its exit code,
// so on a busy machine a job can succeed without the icon. An icon file that the engine does not
// use is not used here either: the log has said so.
ProductIcon keepProductIcon(const QString &executable, const QString &icon);
