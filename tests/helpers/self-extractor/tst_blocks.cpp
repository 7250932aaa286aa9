// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/blockreader.h"
#include "tests/helpers/self-extractor/moduletest.h"

#include <QTest>

using sfx::ExitCode;

// Files with unusual blocks, and with more data after the archive. Either the program runs, or
// nothing happens except a message that the file is damaged. tst_blockreader tests the blocks
// themselves.
class TestBlocks : public ModuleTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void runsOrRefuses_data();
    void runsOrRefuses();
    void ignoresWhatComesAfterTheArchive_data();
    void ignoresWhatComesAfterTheArchive();

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
    QTest::newRow("as long as a block may be") << blockOfSize(most) << true;
    QTest::newRow("a byte between block and archive") << blockOfSize(most - 1) + "x" << false;
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

void TestBlocks::ignoresWhatComesAfterTheArchive_data()
{
    QTest::addColumn<QByteArray>("rest");
    QTest::newRow("a byte") << QByteArray(1, '\0');
    QTest::newRow("a signature's size of noise") << noise(8000, 4);
    QTest::newRow("a megabyte of zeros") << QByteArray(1 << 20, '\0');
    QTest::newRow("the same archive again") << m_archive;
}

void TestBlocks::ignoresWhatComesAfterTheArchive()
{
    QFETCH(QByteArray, rest);
    const Run result = m_run.run(m_run.assemble(m_archive + rest, QStringLiteral("main.exe")));
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, 7);
}

QTEST_GUILESS_MAIN(TestBlocks)
#include "tst_blocks.moc"
