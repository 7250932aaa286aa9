// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <functional>

// Reads the executable at `path` with the self-extractor's own code. `content` also decodes every
// byte and compares all checksums. Returns what the self-extractor would refuse, or an empty text.
using ProductCheck = std::function<QString(const QString &path, bool content)>;

// Does so. Not in a build without the self-extractor's sources, where canCheckProducts() is false.
QString checkProduct(const QString &path, bool content);

bool canCheckProducts();
