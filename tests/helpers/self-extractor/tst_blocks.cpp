// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/core/configblock.h"
#include "tests/helpers/self-extractor/moduletest.h"

#include <QTest>

using sfx::ExitCode;

/// Files with odd blocks, and with more than an archive behind the block: the program runs, or
/// nothing does and the message says that the file is damaged.
class TestBlocks : public ModuleTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void runsOrRefuses_data();
    void runsOrRefuses();
    void ignoresWhatLiesBehindTheArchive_data();
    void ignoresWhatLiesBehindTheArchive();

private:
    QByteArray m_archive;
};

namespace {

const QByteArray begin = ";!@Install@!UTF-8!\n";
const QByteArray end = ";!@InstallEnd@!\n";
const QByteArray program = "RunProgram=\"main.exe\"\n";
const QByteArray folder = "InstallPath=\"%%T\\main\"\n";

QByteArray blockOfSize(qsizetype size)
{
    const QByteArray rest = begin + program + folder + end;
    return begin + "Pad=\"" + QByteArray(size - rest.size() - 7, 'x') + "\"\n" + program + folder
        + end;
}

} // namespace

void TestBlocks::initTestCase()
{
    ModuleTest::initTestCase();
    m_archive = packTree({{QStringLiteral("main.exe"), ModuleRun::programBytes()}},
                         {QStringLiteral("-mx=1")});
    QVERIFY(!m_archive.isEmpty());
}

void TestBlocks::runsOrRefuses_data()
{
    constexpr auto most = static_cast<qsizetype>(sfx::maxBlockSize);
    QTest::addColumn<QByteArray>("block");
    QTest::addColumn<bool>("runs");
    QTest::newRow("nothing but program and folder") << begin + program + folder + end << true;
    QTest::newRow("keys that nobody knows")
        << begin + "Foo=\"1\"\n" + program + "Bar=\"\"\nBar=\"2\"\n" + folder + end << true;
    QTest::newRow("as long as a block may be") << blockOfSize(most) << true;
    QTest::newRow("a byte longer") << blockOfSize(most + 1) << false;
    QTest::newRow("of 1 MiB") << blockOfSize(1 << 20) << false;
    QTest::newRow("no block") << QByteArray() << false;
    QTest::newRow("an empty block") << begin + end << false;
    QTest::newRow("no program") << begin + folder + end << false;
    QTest::newRow("no folder") << begin + program + end << false;
    QTest::newRow("the program twice") << begin + program + program + folder + end << false;
    QTest::newRow("the title twice")
        << begin + "Title=\"a\"\nTitle=\"b\"\n" + program + folder + end << false;
    QTest::newRow("no end") << begin + program + folder << false;
    QTest::newRow("a byte between block and archive")
        << begin + program + folder + end + "x" << false;
}

void TestBlocks::runsOrRefuses()
{
    QFETCH(QByteArray, block);
    QFETCH(bool, runs);
    const Run result = m_run.run(m_run.write(m_run.module() + block + m_archive));
    QCOMPARE(result.value("ended").toUInt(), runs ? 7u : static_cast<quint32>(ExitCode::Damaged));
    QCOMPARE(result.value("program").isEmpty(), !runs);
    QCOMPARE(result.errors.contains("This file is damaged or incomplete."), !runs);
}

void TestBlocks::ignoresWhatLiesBehindTheArchive_data()
{
    QTest::addColumn<QByteArray>("rest");
    QTest::newRow("a byte") << QByteArray(1, '\0');
    QTest::newRow("a signature's size of noise") << noise(8000, 4);
    QTest::newRow("a megabyte of zeros") << QByteArray(1 << 20, '\0');
    QTest::newRow("the same archive again") << m_archive;
}

void TestBlocks::ignoresWhatLiesBehindTheArchive()
{
    QFETCH(QByteArray, rest);
    const Run result = m_run.run(m_run.assemble(m_archive + rest, QStringLiteral("main.exe")));
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, 7);
}

QTEST_GUILESS_MAIN(TestBlocks)
#include "tst_blocks.moc"
