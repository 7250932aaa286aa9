// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/archivermethod.h"

#include <QTest>

class TestArchiverMethod : public QObject
{
    Q_OBJECT

private slots:
    void methods_data();
    void methods();
};

void TestArchiverMethod::methods_data()
{
    QTest::addColumn<QString>("level");
    QTest::addColumn<QString>("method");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *level, const char *method, const char *text) {
        QTest::addRow("%s at %s", method, level)
            << QString(level) << QString(method) << QString(text);
    };
    row("0", "LZMA", "Copy");
    row("0", "LZMA2", "Copy");
    row("1", "LZMA", "LZMA");
    row("3", "LZMA", "LZMA");
    row("5", "LZMA", "LZMA");
    row("9", "LZMA", "LZMA");
    row("1", "LZMA2", "LZMA2:c=1m");
    row("3", "LZMA2", "LZMA2:c=16m");
    row("5", "LZMA2", "LZMA2:c=128m");
    row("7", "LZMA2", "LZMA2:c=256m");
    row("9", "LZMA2", "LZMA2:c=256m");
}

void TestArchiverMethod::methods()
{
    QFETCH(const QString, level);
    QFETCH(const QString, method);
    QTEST(archiverMethod(level, method), "text");
}

QTEST_GUILESS_MAIN(TestArchiverMethod)
#include "tst_archivermethod.moc"
