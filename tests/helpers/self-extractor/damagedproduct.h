// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/helpers/self-extractor/sfxtest.h"

#include <QRandomGenerator>

// Reads a whole produced file as the module does, from its first byte on, and unpacks it into
// `tree`.
sfx::Status unpackProduct(const QByteArray &product, Tree &tree);

// Changes one byte from `begin` on into another; returns its offset.
qsizetype flipByte(QByteArray &bytes, qsizetype begin, QRandomGenerator &random);
