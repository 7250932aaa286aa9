// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/helpers/self-extractor/archivewriter.h"

#include <QByteArray>

// The parts of a produced file, with the bundle's own module. A new one is whole.
struct ForgedProduct
{
    ForgedProduct();

    QByteArray bytes() const { return module + block + archive; }
    void setFiles(const QList<forge::File> &files);
    // Gives the module this text as its settings.
    void setSettings(const QByteArray &settings, bool forConsole = false);

    QByteArray module;
    QByteArray block;
    QByteArray archive;
};

// The files of a new ForgedProduct.
QList<forge::File> forgedFiles();
