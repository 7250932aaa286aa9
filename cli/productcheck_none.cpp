// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// For builds without the self-extractor's sources.

#include "cli/productcheck.h"

QString checkProduct(const QString &, bool)
{
    return {};
}

bool canCheckProducts()
{
    return false;
}
