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
    QTest::addColumn<bool>("independent");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *level, const char *method, bool independent, const char *text) {
        QTest::addRow("%s at %s%s", method, level, independent ? ", independent" : "")
            << QString(level) << QString(method) << independent << QString(text);
    };
    row("0", "LZMA", false, "Copy");
    row("0", "LZMA2", true, "Copy");
    row("5", "LZMA", false, "LZMA");
    row("9", "LZMA2", false, "LZMA2");
    row("1", "LZMA", true, "LZMA");
    row("3", "LZMA", true, "LZMA");
    row("5", "LZMA", true, "LZMA");
    row("9", "LZMA", true, "LZMA");
    row("1", "LZMA2", true, "LZMA2:c=1m");
    row("3", "LZMA2", true, "LZMA2:c=16m");
    row("5", "LZMA2", true, "LZMA2:c=128m");
    row("7", "LZMA2", true, "LZMA2:c=256m");
    row("9", "LZMA2", true, "LZMA2:c=256m");
}

void TestArchiverMethod::methods()
{
    QFETCH(const QString, level);
    QFETCH(const QString, method);
    QFETCH(const bool, independent);
    QTEST(archiverMethod(level, method, independent), "text");
}

QTEST_GUILESS_MAIN(TestArchiverMethod)
#include "tst_archivermethod.moc"
