// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// Copies a file of the resource bundle to `target` and lets its owner read, write and run it, unless a
// file of that name is there already: that one is used as it is. False when the copy fails.
bool provideBundledTool(const QString &resource, const QString &target);
