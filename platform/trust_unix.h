// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// Why the file at `path` must not be run or handed on: it belongs to another user, or others may
// write to it. Empty when it is the user's own, or is not there.
QString untrustedFileReason(const QString &path);
