// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/outputguard.h"

#include "tests/fakes/privatetemp.h"
#include "tests/fakes/testfiles.h"

#include <QTest>

class TestOutputGuard : public QObject
{
    Q_OBJECT

private slots:
    void wholeOutput_data()
    {
        QTest::addColumn<QByteArray>("archive");
        QTest::addColumn<QByteArray>("output");
        QTest::addColumn<bool>("whole");
        QByteArray archive(20000, '\0');
        for (qsizetype i = 0; i < archive.size(); ++i) {
            archive[i] = static_cast<char>(i % 251);
        }
        QTest::newRow("module, block, archive") << archive << "module" + archive << true;
        QTest::newRow("a short archive") << QByteArray("7z") << QByteArray("module7z") << true;
        QTest::newRow("an empty archive") << QByteArray() << QByteArray("module") << true;
        QTest::newRow("the last byte is missing")
            << archive << ("module" + archive).chopped(1) << false;
        QTest::newRow("a chunk in the middle is missing")
            << archive << "module" + archive.left(8000) + archive.mid(12000) << false;
        QTest::newRow("shorter than the archive") << archive << archive.left(10) << false;
        QTest::newRow("empty") << archive << QByteArray() << false;
    }
    void wholeOutput()
    {
        QFETCH(QByteArray, archive);
        QFETCH(QByteArray, output);
        PrivateTemp temp;
        const OutputGuard guard(temp.filePath("a.exe"));
        QVERIFY(guard.isValid());
        QVERIFY(writeFile(guard.archivePath(), archive));
        QVERIFY(writeFile(temp.filePath("a.exe"), output));
        QTEST(guard.outputIsWhole(), "whole");
    }

    void undoingBringsTheOlderOutputBackAndKeepsWhatIsNotOurs()
    {
        PrivateTemp temp;
        const QString output = temp.filePath("a.exe");
        QVERIFY(writeFile(output, "older"));
        QVERIFY(writeFile(output + ".bak", "the user's own"));
        QVERIFY(writeFile(output + ".previous", "rescued from a killed job"));
        OutputGuard guard(output);
        guard.setOldOutputAside();
        QVERIFY(!QFile::exists(output));
        QVERIFY(writeFile(output, "half made"));
        guard.undoOutput();
        guard.removeArchive();
        QCOMPARE(temp.names(), QStringList({"a.exe", "a.exe.bak", "a.exe.previous"}));
        QCOMPARE(readFile(output), QByteArray("older"));
        QCOMPARE(readFile(output + ".bak"), QByteArray("the user's own"));
        QCOMPARE(readFile(output + ".previous"), QByteArray("rescued from a killed job"));
    }

    void undoingWithoutAnOlderOutputLeavesNothing()
    {
        PrivateTemp temp;
        const QString output = temp.filePath("a.exe");
        OutputGuard guard(output);
        guard.setOldOutputAside();
        QVERIFY(writeFile(output, "half made"));
        QVERIFY(writeFile(output + ".bak", "the engine's backup"));
        guard.undoOutput();
        guard.removeArchive();
        QCOMPARE(temp.names(), QStringList());
    }

    void keepingRemovesTheOlderOutput()
    {
        PrivateTemp temp;
        const QString output = temp.filePath("a.exe");
        QVERIFY(writeFile(output, "older"));
        OutputGuard guard(output);
        guard.setOldOutputAside();
        QVERIFY(writeFile(output, "new"));
        guard.keepOutput();
        guard.removeArchive();
        QCOMPARE(temp.names(), QStringList("a.exe"));
        QCOMPARE(readFile(output), QByteArray("new"));
    }
};

QTEST_GUILESS_MAIN(TestOutputGuard)
#include "tst_outputguard.moc"
