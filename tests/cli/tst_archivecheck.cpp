// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/archivecheck.h"

#include "tests/cli/testarchive.h"
#include "tests/fakes/privatetemp.h"
#include "tests/support/testfiles.h"

#include <QBuffer>
#include <QProcess>
#include <QTest>

class TestArchiveCheck : public QObject
{
    Q_OBJECT

private:
    static bool isWhole(QByteArray content)
    {
        QBuffer buffer(&content);
        return buffer.open(QIODevice::ReadOnly) && isWholeArchive(buffer);
    }

    static QByteArray withByte(QByteArray archive, qsizetype at)
    {
        archive[at] = static_cast<char>(archive[at] ^ 1);
        return archive;
    }

private slots:
    void archives_data()
    {
        QTest::addColumn<QByteArray>("archive");
        QTest::addColumn<bool>("whole");
        const QByteArray archive = archiveOf(5000);
        const quint32 crc = crc32("header");
        QTest::newRow("whole") << archive << true;
        QTest::newRow("whole, with nothing but a header") << archiveOf(0) << true;
        QTest::newRow("empty") << QByteArray() << false;
        QTest::newRow("shorter than a start header") << archive.left(31) << false;
        QTest::newRow("a start header only") << archive.left(32) << false;
        QTest::newRow("the start header is not written yet")
            << archive.left(8) + QByteArray(24, '\0') + archive.mid(32) << false;
        QTest::newRow("the start header is not written yet, and nothing else is")
            << archive.left(8) + QByteArray(24, '\0') << false;
        QTest::newRow("the last byte is missing") << archive.chopped(1) << false;
        QTest::newRow("a byte more") << archive + 'x' << false;
        QTest::newRow("half") << archive.left(2500) << false;
        QTest::newRow("another file format") << "PK\3\4" + archive.mid(4) << false;
        QTest::newRow("a damaged start header") << withByte(archive, 13) << false;
        QTest::newRow("a damaged check sum of the start header") << withByte(archive, 9) << false;
        QTest::newRow("a damaged header") << withByte(archive, archive.size() - 1) << false;
        QTest::newRow("a header of no bytes") << startHeader(0, 0, 0) << false;
        QTest::newRow("a header of almost 2^64 bytes")
            << startHeader(7, 0xFFFFFFFFFFFFFFFF, crc) + "header" << false;
        QTest::newRow("an offset of almost 2^64, so that the sum is right again")
            << startHeader(0xFFFFFFFFFFFFFFFF, 7, crc) + "header" << false;
        QTest::newRow("a header beyond the end") << startHeader(6, 6, crc) + "header" << false;
        QTest::newRow("a header that ends before the end")
            << startHeader(0, 6, crc) + "header and more" << false;
    }
    void archives()
    {
        QFETCH(QByteArray, archive);
        QTEST(isWhole(archive), "whole");
    }

    void whatTheArchiverMakesIsWhole_data()
    {
        QTest::addColumn<QString>("method");
        QTest::newRow("LZMA") << "-m0=LZMA";
        QTest::newRow("LZMA2") << "-m0=LZMA2";
    }
    void whatTheArchiverMakesIsWhole()
    {
        QFETCH(QString, method);
        PrivateTemp temp;
        QVERIFY(QDir(temp.path()).mkpath("source"));
        QVERIFY(writeFile(temp.filePath("source/a"), QByteArray(100000, 'a')));
        QVERIFY(writeFile(temp.filePath("source/b"), archiveOf(3000000)));
        const QString archiver = temp.filePath("7zr.exe");
        QVERIFY(QFile::copy(":/resources/7zr.exe", archiver));
        QVERIFY(QFile::setPermissions(archiver, QFile::ReadOwner | QFile::ExeOwner));
        QProcess process;
        process.start(archiver,
                      {"a", "-t7z", QDir::toNativeSeparators(temp.filePath("a.7z")),
                       QDir::toNativeSeparators(temp.filePath("source/*")), method});
        QVERIFY(process.waitForFinished(300000));
        const QByteArray archive = readFile(temp.filePath("a.7z"));
        QVERIFY(isWhole(archive));
        QVERIFY(!isWhole(archive.chopped(1)));
    }

    void ends_data()
    {
        QTest::addColumn<QByteArray>("output");
        QTest::addColumn<bool>("has");
        const QByteArray archive = archiveOf(2500000);
        QTest::newRow("module, block, archive") << "module" + archive << true;
        QTest::newRow("nothing but the archive") << archive << true;
        QTest::newRow("the last byte is missing") << ("module" + archive).chopped(1) << false;
        QTest::newRow("a byte more") << "module" + archive + 'x' << false;
        QTest::newRow("a piece of the middle is missing")
            << "module" + archive.left(8000) + archive.mid(12000) << false;
        QTest::newRow("a piece of the middle is another")
            << "module" + withByte(archive, 1200000) << false;
        QTest::newRow("the first byte is another") << "module" + withByte(archive, 0) << false;
        QTest::newRow("shorter than the archive") << archive.left(10) << false;
        QTest::newRow("empty") << QByteArray() << false;
    }
    void ends()
    {
        QFETCH(QByteArray, output);
        QByteArray archive = archiveOf(2500000);
        QBuffer outputDevice(&output);
        QBuffer archiveDevice(&archive);
        QVERIFY(outputDevice.open(QIODevice::ReadOnly) && archiveDevice.open(QIODevice::ReadOnly));
        QTEST(endsWithArchive(outputDevice, archiveDevice), "has");
    }
};

QTEST_GUILESS_MAIN(TestArchiveCheck)
#include "tst_archivecheck.moc"
