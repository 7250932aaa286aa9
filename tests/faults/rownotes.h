// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTest>

// Writes the results of rows in the form of the tables of docs/reliability.md, so that
// check-document.sh can compare them. KESTRELPACK_FAULT_ROWS names the folder; without it nothing
// is written.

inline void noteRow(const QString &line)
{
    const QString folder = qEnvironmentVariable("KESTRELPACK_FAULT_ROWS");
    if (folder.isEmpty()) {
        return;
    }
    static bool isFirst = true;
    QFile file(folder + '/' + QFileInfo(QCoreApplication::applicationFilePath()).baseName()
               + ".rows");
    if (!file.open(isFirst ? QIODevice::WriteOnly : QIODevice::Append)) {
        qFatal("the row cannot be noted");
    }
    isFirst = false;
    file.write(line.toUtf8() + '\n');
}

// `cells` are the cells after the row's name.
inline void noteResult(const QStringList &cells)
{
    noteRow("| " + QString::fromUtf8(QTest::currentDataTag()) + " | " + cells.join(" | ") + " |");
}

inline void noteSkipped()
{
    noteRow("skipped: " + QString::fromUtf8(QTest::currentDataTag()));
}
