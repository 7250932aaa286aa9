// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/modulerun.h"
#include "tests/helpers/self-extractor/smalldisk.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using sfx::ExitCode;

// The disk becomes full at different points. The message says which path failed and how much space
// is missing. No files stay.
class TestFullDisk : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void saysHowMuchIsMissing_data();
    void saysHowMuchIsMissing();
    void runsWhereThereIsJustEnough();

private:
    ModuleRun m_run;
    Tree m_large;
    Tree m_wasteful;
    Tree m_wastefulAtItsEnd;
};

void TestFullDisk::initTestCase()
{
    QVERIFY(m_run.setUp());
    QVERIFY(m_run.renewTemporaryFolder());
    // A running Wine server would not see the disk.
    QVERIFY(m_run.waitForServersEnd());
    if (!keepMountsToOurselves()) {
        QSKIP("only root can mount a small disk");
    }
    m_large = {{u"main.exe"_s, ModuleRun::programBytes()},
               {u"big.bin"_s, QByteArray((20 << 20) + (1 << 19), 'x')}};
    // The disk allocates pages of 4096 bytes. These files take twice as much space as they have
    // bytes, so the disk fills although there seemed to be enough space.
    m_wasteful = {{u"main.exe"_s, ModuleRun::programBytes()}};
    for (int i = 0; i < 2000; ++i) {
        m_wasteful[u"a/%1.txt"_s.arg(i, 4, 10, QChar(u'0'))] = QByteArray(4097, 'x');
    }
    m_wastefulAtItsEnd = {{u"main.exe"_s, ModuleRun::programBytes()},
                          {u"z/last.txt"_s, QByteArray(900 << 10, 'x')}};
    for (int i = 0; i < 128; ++i) {
        m_wastefulAtItsEnd[u"a/%1.txt"_s.arg(i, 4, 10, QChar(u'0'))] = "x";
    }
}

// The next test's programs must not meet a server that sees these mounts.
void TestFullDisk::cleanupTestCase()
{
    QVERIFY(m_run.waitForServersEnd());
}

void TestFullDisk::saysHowMuchIsMissing_data()
{
    QTest::addColumn<Tree>("tree");
    QTest::addColumn<QByteArray>("disk");
    QTest::addColumn<QString>("missing");
    QTest::addColumn<QString>("about"); // a path in the temporary folder
    QTest::addColumn<bool>("systemSaidIt");
    const auto row = [](const char *name, const Tree &tree, const char *disk, const char *missing,
                        const char *about, bool systemSaidIt = true) {
        QTest::newRow(name) << tree << QByteArray(disk) << QString(missing) << QString(about)
                            << systemSaidIt;
    };
    row("not enough for all, known before the first file", m_large, "size=4m", "17 MB",
        "kp-[0-9a-f]{20}\\\\main", false);
    row("full in the middle", m_wasteful, "size=10m", "3 MB",
        "kp-[0-9a-f]{20}\\\\main\\\\a\\\\[0-9]{4}\\.txt");
    row("full at the last file", m_wastefulAtItsEnd, "size=1300k", "1 MB",
        "kp-[0-9a-f]{20}\\\\main\\\\z\\\\last\\.txt");
    row("no room for the lock file", m_large, "size=4m,nr_inodes=1", "17 MB", "");
    row("no room for the private folder", m_large, "size=4m,nr_inodes=2", "17 MB", "");
    row("no room for the application's folder", m_large, "size=4m,nr_inodes=3", "17 MB", "");
}

void TestFullDisk::saysHowMuchIsMissing()
{
    QFETCH(Tree, tree);
    QFETCH(QByteArray, disk);
    QFETCH(QString, missing);
    QFETCH(QString, about);
    QFETCH(bool, systemSaidIt);
    const QString file = m_run.assemble(tree, u"main.exe"_s);
    QVERIFY(!file.isEmpty());
    const SmallDisk small(m_run.temporaryFolder(), disk.constData());
    QVERIFY(small.isMounted());
    const Run result = m_run.run(file);
    QCOMPARE(m_run.leftovers(), QStringList());
    QCOMPARE(result.value("ended").toUInt(), static_cast<quint32>(ExitCode::DiskFull));
    QCOMPARE(result.value("program"), QString());
    const QString folder = QRegularExpression::escape(windowsPath(m_run.temporaryFolder()) + u'\\');
    const QRegularExpression expected(QRegularExpression::anchoredPattern(
        u"main Portable: There is not enough free space in the temporary folder\\. "
        "At least %1 more is needed\\. %2%3%4"_s.arg(missing, folder, about,
                                                     systemSaidIt ? u" \\w.{5,}"_s : QString())));
    const QString said = QString::fromUtf8(result.errors).trimmed();
    QVERIFY2(expected.match(said).hasMatch(), qPrintable(said));
}

void TestFullDisk::runsWhereThereIsJustEnough()
{
    const QString file = m_run.assemble(m_large, u"main.exe"_s);
    const SmallDisk small(m_run.temporaryFolder(), "size=21m");
    QVERIFY(small.isMounted());
    QCOMPARE(m_run.run(file).exitCode, 7);
    QCOMPARE(m_run.leftovers(), QStringList());
}

QTEST_GUILESS_MAIN(TestFullDisk)
#include "tst_fulldisk.moc"
