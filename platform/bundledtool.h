// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// Copies a file of the resource bundle to `target`, and allows its owner to read, write and run it.
// If `target` already exists, it is used as it is. Returns false if the copy fails.
bool provideBundledTool(const QString &resource, const QString &target);
