// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "inspection/extraction.h"

#include "tests/inspection/forgedproduct.h"
#include "tests/support/testfiles.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

class TestExtraction : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_dir = std::make_unique<QTemporaryDir>(); }
    void everythingIsThere_data();
    void everythingIsThere();
    void foldersThatAreRefused();
    void afterAFailureNothingIsLeft();
    void afterAStopNothingIsLeft();

private:
    QString path(const QString &name) const { return m_dir->filePath(name); }
    void open(ProducedFile &file, const QByteArray &bytes) const
    {
        if (!writeFile(path("product.exe"), bytes) || !file.open(path("product.exe")).isEmpty()
            || file.check()) {
            qFatal("the product could not be made");
        }
    }

    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestExtraction::everythingIsThere_data()
{
    QTest::addColumn<QString>("existing");
    QTest::newRow("a new folder") << QString();
    QTest::newRow("an empty one") << "out";
    QTest::newRow("in a new folder") << "other";
}

void TestExtraction::everythingIsThere()
{
    QFETCH(const QString, existing);
    if (!existing.isEmpty()) {
        QVERIFY(QDir(m_dir->path()).mkdir(existing));
    }
    ProducedFile file;
    open(file, ForgedProduct().bytes());
    const QString out = existing == "other" ? path("a/b/out") : path("out");
    QVERIFY(obstacleAt(out) == ExtractionObstacle::None);
    QVERIFY(!extractInto(file, out));
    QCOMPARE(readFile(out + "/main.exe"), "the program");
    QCOMPARE(readFile(out + "/data/文件.txt"), "text in a folder");
    QVERIFY(!(QFile::permissions(out + "/fixed.ini") & QFile::WriteOwner));
    QVERIFY(QFile::permissions(out + "/main.exe") & QFile::WriteOwner);
    QCOMPARE(QDir(out).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), 3);
    QCOMPARE(
        QDir(QFileInfo(out).path()).entryList({".kestrelpack-*"}, QDir::AllEntries | QDir::Hidden),
        QStringList());
    QVERIFY(obstacleAt(out)
            == ExtractionObstacle::NotEmpty); // a second time nothing is overwritten
    QVERIFY(QFile::setPermissions(out + "/fixed.ini", QFile::ReadOwner | QFile::WriteOwner));
}

void TestExtraction::foldersThatAreRefused()
{
    QVERIFY(writeFile(path("file"), "x"));
    QVERIFY(QDir(m_dir->path()).mkdir("full"));
    QVERIFY(writeFile(path("full/.hidden"), "x"));
    QVERIFY(obstacleAt(path("file")) == ExtractionObstacle::NotAFolder);
    QVERIFY(obstacleAt(path("full")) == ExtractionObstacle::NotEmpty);
}

void TestExtraction::afterAFailureNothingIsLeft()
{
    ForgedProduct product;
    product.archive[product.archive.indexOf("text in a folder")] = 'T';
    ProducedFile file;
    open(file, product.bytes());
    const auto finding = extractInto(file, path("out"));
    QVERIFY(finding);
    QCOMPARE(finding->number, 201);
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{"product.exe"});
}

void TestExtraction::afterAStopNothingIsLeft()
{
    ProducedFile file;
    open(file, ForgedProduct().bytes());
    int asked = 0;
    QVERIFY(extractInto(file, path("out"), [&asked] { return ++asked == 2; }));
    QCOMPARE(asked, 2);
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{"product.exe"});
}

QTEST_GUILESS_MAIN(TestExtraction)

#include "tst_extraction.moc"
