// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/helpers/self-extractor/sfxtest.h"

#include <QRandomGenerator>

// Reads a whole produced file from its first byte, as the module does, and unpacks it into `tree`.
sfx::Status unpackProduct(const QByteArray &product, Tree &tree);

// Changes one byte after `begin` to another value and returns its offset.
qsizetype flipByte(QByteArray &bytes, qsizetype begin, QRandomGenerator &random);
