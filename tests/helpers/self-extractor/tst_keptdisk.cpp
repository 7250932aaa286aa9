// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/keptrun.h"
#include "tests/helpers/self-extractor/smalldisk.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

// The profile's disk is full or cannot be written to: the program runs from a private folder.
class TestKeptDisk : public KeptTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();
    void goesOnWithAFullDisk_data();
    void goesOnWithAFullDisk();
    void goesOnIfNothingCanBeWritten_data();
    void goesOnIfNothingCanBeWritten();

private:
    QString m_disk;
    QString m_file;
};

void TestKeptDisk::initTestCase()
{
    QVERIFY(m_run.setUp());
    QVERIFY(m_run.renewTemporaryFolder());
    // A running Wine server would not see the disk.
    QVERIFY(m_run.waitForServersEnd());
    if (!keepMountsToOurselves()) {
        QSKIP("only root can mount a small disk");
    }
    Tree tree = usualTree();
    tree[u"large.bin"_s] = QByteArray(3 << 20, 'x');
    for (int i = 0; i < 40; ++i) {
        tree[u"many/%1.txt"_s.arg(i)] = "x";
    }
    m_file = assemble(u"large"_s, tree);
    QVERIFY(!m_file.isEmpty());
}

void TestKeptDisk::init()
{
    QVERIFY(m_run.renewTemporaryFolder());
    m_profile = m_run.path(u"disk"_s);
    QVERIFY(QDir().mkpath(m_profile));
}

void TestKeptDisk::cleanup()
{
    QCOMPARE(m_run.leftovers(), QStringList());
}

// The next test's programs must not meet a server that sees these mounts.
void TestKeptDisk::cleanupTestCase()
{
    QVERIFY(m_run.waitForServersEnd());
}

void TestKeptDisk::goesOnWithAFullDisk_data()
{
    QTest::addColumn<QByteArray>("disk");
    QTest::newRow("not enough for all") << QByteArray("size=1m");
    QTest::newRow("no room for anything") << QByteArray("size=4m,nr_inodes=1");
    QTest::newRow("no room for the lock file") << QByteArray("size=4m,nr_inodes=2");
    QTest::newRow("no room for the record") << QByteArray("size=4m,nr_inodes=3");
    QTest::newRow("no room for the new folder") << QByteArray("size=4m,nr_inodes=4");
    QTest::newRow("no room for the application's folder") << QByteArray("size=4m,nr_inodes=5");
    QTest::newRow("no room for a file") << QByteArray("size=4m,nr_inodes=6");
    QTest::newRow("full in the middle") << QByteArray("size=4m,nr_inodes=30");
}

void TestKeptDisk::goesOnWithAFullDisk()
{
    QFETCH(QByteArray, disk);
    const SmallDisk small(m_profile, disk.constData());
    QVERIFY(small.isMounted());
    const Run result = run(m_file);
    QVERIFY2(isPrivate(result), result.output + result.errors);
    QCOMPARE(keptFolders(), QStringList());
    QCOMPARE(besideKept(), QStringList());
}

void TestKeptDisk::goesOnIfNothingCanBeWritten_data()
{
    QTest::addColumn<bool>("isKeptAlready");
    QTest::newRow("a new profile") << false;
    QTest::newRow("a profile with the kept folder") << true;
}

void TestKeptDisk::goesOnIfNothingCanBeWritten()
{
    QFETCH(bool, isKeptAlready);
    const SmallDisk small(m_profile, "size=20m");
    QVERIFY(small.isMounted());
    QVERIFY(!isKeptAlready || isKept(run(m_file)));
    QVERIFY(mount("none", QFile::encodeName(m_profile).constData(), nullptr, MS_REMOUNT | MS_RDONLY,
                  nullptr)
            == 0);
    // A whole folder can be used as it is.
    const Run result = run(m_file);
    QVERIFY2(isPrivate(result) || (isKeptAlready && isKept(result)), result.output);
    QCOMPARE(keptFolders().size(), isKeptAlready ? 1 : 0);
}

QTEST_GUILESS_MAIN(TestKeptDisk)
#include "tst_keptdisk.moc"
