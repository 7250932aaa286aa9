// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/moduletest.h"

#include <QFile>
#include <QProcess>
#include <QTest>

using sfx::ExitCode;

class TestSelfExtractor : public ModuleTest
{
    Q_OBJECT

private slots:
    void initTestCase_data();
    void init();
    void isSmallAndSelfContained();
    void startsProgramsOfAnyName_data();
    void startsProgramsOfAnyName();
    void startsExactlyTheNamedProgram();
    void refusesDamage_data();
    void refusesDamage();
    void saysThatTheProgramIsMissing();
    void saysThatTheProgramCannotStart();
    void showsNoBoxThatNobodySees();
    void unpacksNamesOfAllKinds();
    void staysSmallInMemory();
};

// Everything here is the same with both modules.
void TestSelfExtractor::initTestCase_data()
{
    QTest::addColumn<bool>("isFull");
    QTest::newRow("the small module") << false;
    QTest::newRow("the full module") << true;
}

void TestSelfExtractor::init()
{
    QFETCH_GLOBAL(bool, isFull);
    m_run.useFullModule(isFull);
    ModuleTest::init();
}

void TestSelfExtractor::isSmallAndSelfContained()
{
    QFETCH_GLOBAL(bool, isFull);
    QVERIFY2(m_run.module().size() <= (isFull ? 140000 : 100000),
             qPrintable(QString::number(m_run.module().size())));
    for (const char *library : {"msvcrt.dll", "libgcc", "libstdc++", "libwinpthread", "api-ms"}) {
        QVERIFY2(!m_run.module().toLower().contains(library), library);
    }
}

void TestSelfExtractor::startsProgramsOfAnyName_data()
{
    QTest::addColumn<QString>("program");
    QTest::newRow("blanks") << "my own tool.exe";
    QTest::newRow("dots") << "my.tool.v2.exe";
    QTest::newRow("Chinese") << QString("\u4f60\u597d \u7a0b\u5e8f.exe");
    QTest::newRow("an emoji") << QString("\U0001f600.exe");
    QTest::newRow("percent signs and quotes") << "100%TEMP% 'x' & (y).exe";
    QTest::newRow("no base name") << ".exe.exe";
}

void TestSelfExtractor::startsProgramsOfAnyName()
{
    QFETCH(QString, program);
    const QString file = m_run.assemble(Tree{{program, ModuleRun::programBytes()}}, program);
    QVERIFY(!file.isEmpty());
    const Run result = m_run.run(file, QStringLiteral(" --exit=42"));
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, 42);
    QCOMPARE(result.value("program"), result.value("folder") + u'\\' + program);
    const QString base = program.section(u'.', 0, 0);
    QVERIFY(result.value("folder").endsWith(u'\\' + (base.isEmpty() ? "app" : base)));
    QVERIFY(result.value("folder").contains(QStringLiteral("\\temp\\kp-")));
}

void TestSelfExtractor::startsExactlyTheNamedProgram()
{
    const Tree tree{{QStringLiteral("a.exe"), "not a program"},
                    {QStringLiteral("main.exe"), ModuleRun::programBytes()},
                    {QStringLiteral("main.exe.com"), "nor this"},
                    {QStringLiteral("sub/main.exe"), "nor this"}};
    const Run result = m_run.run(m_run.assemble(tree, QStringLiteral("main.exe")));
    QCOMPARE(result.exitCode, 7);
    QVERIFY(result.value("program").endsWith(QStringLiteral("\\main\\main.exe")));
}

// tst_damagedproduct has all kinds of damage. Here the module itself reports it.
void TestSelfExtractor::refusesDamage_data()
{
    QTest::addColumn<int>("keptPerMille"); // part of the archive
    QTest::addColumn<int>("flippedPerMille");
    QTest::newRow("without its archive") << 0 << -1;
    QTest::newRow("cut in the middle") << 500 << -1;
    QTest::newRow("cut near the end") << 999 << -1;
    QTest::newRow("altered in its first byte") << 1000 << 0;
    QTest::newRow("altered in its packed data") << 1000 << 500;
    QTest::newRow("altered at the end of its packed data") << 1000 << 960;
    QTest::newRow("altered at its end") << 1000 << 999;
}

void TestSelfExtractor::refusesDamage()
{
    QFETCH(int, keptPerMille);
    QFETCH(int, flippedPerMille);
    static const QByteArray whole
        = packTree({{QStringLiteral("main.exe"), ModuleRun::programBytes()},
                    {QStringLiteral("data.bin"), noise(1500000, 5)}},
                   {QStringLiteral("-mx=1")});
    QVERIFY(!whole.isEmpty());
    QByteArray archive = whole;
    if (flippedPerMille >= 0) {
        const qsizetype at = archive.size() * flippedPerMille / 1000;
        archive[at] = static_cast<char>(archive[at] ^ 4);
    }
    archive.truncate(archive.size() * keptPerMille / 1000);
    const QByteArray block = ModuleRun::blockFor(QStringLiteral("main.exe"));
    const Run result = m_run.run(m_run.write(m_run.module() + block + archive));
    QCOMPARE(result.exitCode, lowByte(ExitCode::Damaged));
    QCOMPARE(result.value("program"), QString());
    QVERIFY(result.errors.startsWith("main Portable: "));
}

void TestSelfExtractor::saysThatTheProgramIsMissing()
{
    const Run result = m_run.run(
        m_run.assemble(Tree{{QStringLiteral("other.exe"), "x"}}, QStringLiteral("main.exe")));
    QCOMPARE(result.exitCode, lowByte(ExitCode::ProgramMissing));
    QVERIFY(result.errors.contains("main.exe"));
}

void TestSelfExtractor::saysThatTheProgramCannotStart()
{
    const Run result = m_run.run(
        m_run.assemble(Tree{{QStringLiteral("main.exe"), "text"}}, QStringLiteral("main.exe")));
    QCOMPARE(result.exitCode, lowByte(ExitCode::StartFailed));
    QVERIFY(result.errors.contains("main.exe"));
    QVERIFY2(!result.errors.contains('%'), result.errors.constData()); // the name is inserted
}

// On a desktop that nobody sees, as that of a service, a message box would wait for ever.
void TestSelfExtractor::showsNoBoxThatNobodySees()
{
    const Run result
        = m_run.run(m_run.write(m_run.module()), QString(), {QStringLiteral("--unseen")});
    QCOMPARE(result.value("ended").toUInt(), static_cast<quint32>(ExitCode::Damaged));
}

// Names and contents of the unpacked files, read from outside while the program runs.
void TestSelfExtractor::unpacksNamesOfAllKinds()
{
    const QString longName(120, u'n');
    const Tree tree{{QStringLiteral("main.exe"), ModuleRun::programBytes()},
                    {QStringLiteral("\u7a0b\u5e8f/\u8bfb\u6211 \u7b80.txt"), "\xe4\xbd\xa0"},
                    {QStringLiteral("\U0001f600 \U0001f680/\U0001f389.bin"), QByteArray(70000, 0)},
                    {QStringLiteral("empty"), ""},
                    {QStringLiteral("deep/empty too.txt"), ""},
                    {QStringLiteral("100% 'x' & (y);=,^!.txt"), "signs"},
                    {longName + u'/' + longName + u'/' + longName + u'/' + longName, "far down"}};
    const auto process
        = m_run.start(m_run.assemble(tree, QStringLiteral("main.exe")), QStringLiteral(" --wait"));
    QVERIFY(process != nullptr);
    QVERIFY(!ModuleRun::waitForOutput(*process, "program=").isEmpty());
    const QString folder = m_run.temporaryFolder() + u'/' + m_run.leftovers().value(0)
        + QStringLiteral("/main/");
    for (auto item = tree.cbegin(); item != tree.cend(); ++item) {
        QVERIFY2(QFile::exists(folder + item.key()), qPrintable(item.key()));
        QCOMPARE(contentOf(folder + item.key()), item.value());
    }
    QCOMPARE(ModuleRun::finish(*process).exitCode, 7);
}

// Reads the module's peak memory after the payload is unpacked, while the program waits.
void TestSelfExtractor::staysSmallInMemory()
{
    const QByteArray archive = packTree({{QStringLiteral("main.exe"), ModuleRun::programBytes()},
                                         {QStringLiteral("big.bin"), QByteArray(128 << 20, 'x')}},
                                        {QStringLiteral("-mx=1"), QStringLiteral("-m0=LZMA:d=4m")});
    const auto process = m_run.startDirectly(m_run.assemble(archive, QStringLiteral("main.exe")),
                                             {QStringLiteral("--wait")});
    QVERIFY(process->waitForReadyRead(patience));
    qint64 peak = -1;
    const QByteArray status
        = contentOf(QStringLiteral("/proc/%1/status").arg(process->processId()));
    for (const QByteArray &line : status.split('\n')) {
        if (line.startsWith("VmHWM:")) {
            peak = line.mid(6).trimmed().split(' ').first().toLongLong();
        }
    }
    QCOMPARE(ModuleRun::finish(*process).exitCode, 7);
    qInfo("peak: %lld KiB", static_cast<long long>(peak));
    QVERIFY(peak > 0);
    QVERIFY(peak < 64 * 1024);
}

QTEST_GUILESS_MAIN(TestSelfExtractor)
#include "tst_selfextractor.moc"
