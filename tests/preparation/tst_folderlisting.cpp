// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/folderlisting.h"

#include "tests/support/onwindows.h"
#include "tests/support/testfiles.h"

#include <QDateTime>
#include <QDir>
#include <QHash>
#include <QTemporaryDir>
#include <QTest>

class TestFolderListing : public QObject
{
    Q_OBJECT

private slots:
    void listsFilesAndFolders();
    void aFolderThatIsMissingIsAnError();
    void longPathsAreListed();
    void manyFilesAreListed();
};

void TestFolderListing::listsFilesAndFolders()
{
    const QTemporaryDir temp;
    QVERIFY(QDir(temp.path()).mkpath("a/empty"));
    QVERIFY(writeFile(temp.filePath("a/.hidden"), "12345"));
    QFile file(temp.filePath(QString::fromUtf8("文件 1.txt")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.setFileTime(QDateTime::fromMSecsSinceEpoch(1700000000500),
                             QFileDevice::FileModificationTime));
    file.close();

    const SourceListing listing = listFolder(temp.path());
    QCOMPARE(listing.error, QString());
    QHash<QString, SourceEntry> entries;
    for (const SourceEntry &entry : listing.entries) {
        QVERIFY(!entry.nameIsDamaged);
        QVERIFY(!entry.mustNotBeLinked);
        QCOMPARE(entry.mode.has_value(), !onWindows);
        QCOMPARE(entry.attributes.has_value(), onWindows);
        entries.insert(entry.path, entry);
    }
    QCOMPARE(listing.entries.size(), 4);
    QCOMPARE(entries.value("a").kind, SourceEntry::Kind::Folder);
    QCOMPARE(entries.value("a/empty").kind, SourceEntry::Kind::Folder);
    QCOMPARE(entries.value("a/.hidden").kind, SourceEntry::Kind::File);
    QCOMPARE(entries.value("a/.hidden").size, 5);
    QCOMPARE(entries.value(QString::fromUtf8("文件 1.txt")).modified, 17000000005000000);
}

void TestFolderListing::aFolderThatIsMissingIsAnError()
{
    const QTemporaryDir temp;
    QVERIFY(!listFolder(temp.filePath("missing")).error.isEmpty());
}

void TestFolderListing::longPathsAreListed()
{
    const QTemporaryDir temp;
    QString path = temp.path();
    for (int i = 0; i < 8; ++i) {
        path += '/' + QString(60, QChar('a' + i));
        QVERIFY(QDir().mkdir(path));
    }
    QVERIFY(writeFile(path + "/file", "x"));
    const SourceListing listing = listFolder(temp.path());
    QCOMPARE(listing.entries.size(), 9);
    QCOMPARE(listing.entries.constLast().size, 1);
}

void TestFolderListing::manyFilesAreListed()
{
    const QTemporaryDir temp;
    for (int i = 0; i < 3000; ++i) {
        QVERIFY(writeFile(temp.filePath(QString::number(i)), {}));
    }
    QCOMPARE(listFolder(temp.path()).entries.size(), 3000);
}

QTEST_GUILESS_MAIN(TestFolderListing)
#include "tst_folderlisting.moc"
