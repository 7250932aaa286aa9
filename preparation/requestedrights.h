// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

// Whether a program with this manifest asks for more rights than its caller has: those of an
// administrator, the highest that the user has, or uiAccess (Microsoft, "Application manifests":
// requestedExecutionLevel). A manifest that is no XML asks for nothing: Windows does not start such a
// program.
bool asksForRights(const QByteArray &manifest);
