// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/exitcodes.h"
#include "tests/helpers/self-extractor/sfxtest.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <sys/mount.h>
#include <unistd.h>

using sfx::ExitCode;

namespace {

/// What came out of one run; Wine passes on the low byte of an exit code only.
struct Run {
    int exitCode = -1;
    QByteArray output;
    QByteArray errors;

    QString value(const char *key) const
    {
        for (const QByteArray &line : output.split('\n')) {
            if (line.startsWith(QByteArray(key) + '=')) {
                return QString::fromUtf8(line.mid(line.indexOf('=') + 1)).remove(u'\r');
            }
        }
        return QString();
    }
};

int lowByte(ExitCode code)
{
    return static_cast<int>(static_cast<quint32>(code) & 0xff);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray blockFor(const QString &program)
{
    const QString base = program.section(u'.', 0, 0);
    return QStringLiteral(";!@Install@!UTF-8!\nTitle=\"%1 Portable\"\nBeginPrompt=\"%1\"\n"
                          "Progress=\"yes\"\nRunProgram=\"%2\"\nInstallPath=\"%%T\\%1\"\n"
                          "GUIMode=\"2\"\nSilent=\"0\"\nOverwrite=\"1\"\n;!@InstallEnd@!\n")
        .arg(base, program)
        .toUtf8();
}

QByteArray programBytes()
{
    return contentOf(QStringLiteral(KESTRELPACK_TEST_PROGRAM));
}

} // namespace

class TestSelfExtractor : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void isSmallAndSelfContained();
    void passesArgumentsVerbatim_data();
    void passesArgumentsVerbatim();
    void passesExitCodes_data();
    void passesExitCodes();
    void startsProgramsOfAnyName_data();
    void startsProgramsOfAnyName();
    void startsExactlyTheNamedProgram();
    void removesReadOnlyFiles();
    void refusesDamage_data();
    void refusesDamage();
    void refusesNamesThatLeadOut();
    void saysThatTheProgramIsMissing();
    void saysThatTheProgramCannotStart();
    void runsWithASignatureBehindTheArchive();
    void staysSmallInMemory();
    void cleansUpOnAFullDisk();

private:
    QString write(const QByteArray &bytes);
    QString assemble(const QByteArray &archive, const QString &program);
    QString assemble(const Tree &tree, const QString &program)
    {
        return assemble(packTree(tree, {QStringLiteral("-mx=1")}), program);
    }
    void prepare(QProcess &process) const;
    Run run(const QString &file, const QString &tail = QString());
    QStringList leftovers() const;

    QTemporaryDir m_folder;
    QTemporaryDir m_ownPrefix;
    QString m_prefix;
    QString m_temporary; // as Linux names it
    QByteArray m_module;
};

void TestSelfExtractor::initTestCase()
{
    m_prefix = qEnvironmentVariable("KESTRELPACK_TEST_WINEPREFIX");
    m_module = contentOf(QStringLiteral(KESTRELPACK_TEST_MODULE));
    QVERIFY(!m_module.isEmpty());
    QVERIFY(!programBytes().isEmpty());
    if (m_prefix.isEmpty()) {
        m_prefix = m_ownPrefix.path();
        QProcess boot;
        prepare(boot);
        boot.start(QStringLiteral("wine"), {QStringLiteral("wineboot"), QStringLiteral("-i")});
        QVERIFY(boot.waitForFinished(120000));
    }
}

void TestSelfExtractor::init()
{
    m_temporary = m_folder.filePath(QStringLiteral("temp"));
    QVERIFY(QDir().mkpath(m_temporary));
}

void TestSelfExtractor::cleanup()
{
    QCOMPARE(leftovers(), QStringList());
}

QStringList TestSelfExtractor::leftovers() const
{
    return QDir(m_temporary).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

void TestSelfExtractor::prepare(QProcess &process) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("WINEPREFIX"), m_prefix);
    environment.insert(QStringLiteral("WINEDEBUG"), QStringLiteral("-all"));
    environment.insert(QStringLiteral("WINEDLLOVERRIDES"), QStringLiteral("mscoree,mshtml="));
    environment.remove(QStringLiteral("DISPLAY"));
    if (!m_temporary.isEmpty()) {
        QString path = QStringLiteral("Z:") + m_temporary;
        path.replace(u'/', u'\\');
        environment.insert(QStringLiteral("KESTRELPACK_TEST_TEMP"), path);
    }
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(m_folder.path());
}

QString TestSelfExtractor::write(const QByteArray &bytes)
{
    const QString path = m_folder.filePath(QStringLiteral("produced one.exe"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        return QString();
    }
    return path;
}

QString TestSelfExtractor::assemble(const QByteArray &archive, const QString &program)
{
    return archive.isEmpty() ? QString() : write(m_module + blockFor(program) + archive);
}

// Wine's loader would quote anew, so a Windows program starts the file with the line as it stands.
Run TestSelfExtractor::run(const QString &file, const QString &tail)
{
    Run result;
    QProcess process;
    prepare(process);
    process.start(QStringLiteral("wine"),
                  {QStringLiteral(KESTRELPACK_TEST_PROGRAM), QStringLiteral("--run"),
                   QStringLiteral("Z:") + QString(file).replace(u'/', u'\\'),
                   QString::fromLatin1(tail.toUtf8().toHex())});
    process.closeWriteChannel();
    if (process.waitForFinished(120000)) {
        result.exitCode = process.exitCode();
    }
    result.output = process.readAllStandardOutput();
    result.errors = process.readAllStandardError();
    return result;
}

void TestSelfExtractor::isSmallAndSelfContained()
{
    QVERIFY2(m_module.size() <= 120000, qPrintable(QString::number(m_module.size())));
    for (const char *library : {"msvcrt.dll", "libgcc", "libstdc++", "libwinpthread", "api-ms"}) {
        QVERIFY2(!m_module.toLower().contains(library), library);
    }
}

void TestSelfExtractor::passesArgumentsVerbatim_data()
{
    QTest::addColumn<QString>("tail");
    QTest::newRow("none") << "";
    QTest::newRow("plain ones") << " one two";
    QTest::newRow("blanks in quotes") << " one \"two three\"";
    QTest::newRow("runs of blanks and tabs") << "   one \t two  ";
    QTest::newRow("an empty one") << " \"\" x";
    QTest::newRow("escaped quotes") << " \"a \\\"b\\\" c\"";
    QTest::newRow("backslashes at the end") << " \"c:\\x y\\\\\" d\\";
    QTest::newRow("an open quote") << " \"a b";
    QTest::newRow("other scripts") << QString(" \u4e2d\u6587 \"\U0001f600 x\"");
    QTest::newRow("more than a thousand characters") << " " + QString("abc ").repeated(2000) + "z";
}

void TestSelfExtractor::passesArgumentsVerbatim()
{
    QFETCH(QString, tail);
    const QString file
        = assemble(Tree{{QStringLiteral("main.exe"), programBytes()}}, QStringLiteral("main.exe"));
    const Run result = run(file, tail);
    QCOMPARE(result.value("tail"), tail);
    QCOMPARE(result.exitCode, 7);
}

void TestSelfExtractor::passesExitCodes_data()
{
    QTest::addColumn<quint32>("code");
    for (const quint32 code : {0u, 1u, 255u, 256u, 259u, 0x7fffffffu, 0xc0000005u, 0xffffffffu}) {
        QTest::addRow("%u", code) << code;
    }
}

void TestSelfExtractor::passesExitCodes()
{
    QFETCH(quint32, code);
    const QString file
        = assemble(Tree{{QStringLiteral("main.exe"), programBytes()}}, QStringLiteral("main.exe"));
    const Run result = run(file, QStringLiteral(" --exit=%1").arg(code));
    QCOMPARE(result.value("ended"), QString::number(code)); // all 32 bits
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
    const QString file = assemble(Tree{{program, programBytes()}}, program);
    QVERIFY(!file.isEmpty());
    const Run result = run(file, QStringLiteral(" --exit=42"));
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
                    {QStringLiteral("main.exe"), programBytes()},
                    {QStringLiteral("main.exe.com"), "nor this"},
                    {QStringLiteral("sub/main.exe"), "nor this"}};
    const Run result = run(assemble(tree, QStringLiteral("main.exe")));
    QCOMPARE(result.exitCode, 7);
    QVERIFY(result.value("program").endsWith(QStringLiteral("\\main\\main.exe")));
}

void TestSelfExtractor::removesReadOnlyFiles()
{
    QTemporaryDir folder;
    QVERIFY(writeTree(folder.path(), {{QStringLiteral("main.exe"), programBytes()},
                                      {QStringLiteral("deep/er/x.txt"), "x"},
                                      {QStringLiteral("empty/"), QByteArray()}}));
    QVERIFY(QFile::setPermissions(folder.filePath(QStringLiteral("deep/er/x.txt")),
                                  QFileDevice::ReadOwner));
    const Run result
        = run(assemble(pack(folder.path(), {}), QStringLiteral("main.exe")), QString());
    QCOMPARE(result.exitCode, 7);
}

void TestSelfExtractor::refusesDamage_data()
{
    QTest::addColumn<int>("keptPerMille"); // of the archive
    QTest::addColumn<int>("flippedPerMille");
    QTest::newRow("without its archive") << 0 << -1;
    QTest::newRow("cut in the middle") << 500 << -1;
    QTest::newRow("cut near the end") << 999 << -1;
    QTest::newRow("altered in its packed data") << 1000 << 500;
    QTest::newRow("altered at the end of its packed data") << 1000 << 960;
}

void TestSelfExtractor::refusesDamage()
{
    QFETCH(int, keptPerMille);
    QFETCH(int, flippedPerMille);
    QByteArray archive = packTree({{QStringLiteral("main.exe"), programBytes()},
                                   {QStringLiteral("data.bin"), noise(1500000, 5)}},
                                  {});
    if (flippedPerMille >= 0) {
        const qsizetype at = archive.size() * flippedPerMille / 1000;
        archive[at] = static_cast<char>(archive[at] ^ 4);
    }
    archive.truncate(archive.size() * keptPerMille / 1000);
    const Run result = run(write(m_module + blockFor(QStringLiteral("main.exe")) + archive));
    QCOMPARE(result.exitCode, lowByte(ExitCode::Damaged));
    QCOMPARE(result.value("program"), QString());
    QVERIFY(result.errors.startsWith("main Portable: "));
}

void TestSelfExtractor::refusesNamesThatLeadOut()
{
    const QString honest = QStringLiteral("aa/evil.dll");
    QByteArray archive
        = packTree({{QStringLiteral("main.exe"), programBytes()}, {honest, "evil"}},
                   {QStringLiteral("-mhc=off")});
    QVERIFY(renameInArchive(archive, honest, QStringLiteral("..\\evil.dll")));
    const Run result = run(assemble(archive, QStringLiteral("main.exe")));
    QCOMPARE(result.exitCode, lowByte(ExitCode::UnsafeName));
    QCOMPARE(result.value("program"), QString());
    QVERIFY(!QFile::exists(m_folder.filePath(QStringLiteral("evil.dll"))));
}

void TestSelfExtractor::saysThatTheProgramIsMissing()
{
    const Run result
        = run(assemble(Tree{{QStringLiteral("other.exe"), "x"}}, QStringLiteral("main.exe")));
    QCOMPARE(result.exitCode, lowByte(ExitCode::ProgramMissing));
    QVERIFY(result.errors.contains("main.exe"));
}

void TestSelfExtractor::saysThatTheProgramCannotStart()
{
    const Run result
        = run(assemble(Tree{{QStringLiteral("main.exe"), "text"}}, QStringLiteral("main.exe")));
    QCOMPARE(result.exitCode, lowByte(ExitCode::StartFailed));
    QVERIFY(result.errors.contains("main.exe"));
}

void TestSelfExtractor::runsWithASignatureBehindTheArchive()
{
    const QByteArray archive = packTree({{QStringLiteral("main.exe"), programBytes()}}, {});
    const Run result = run(assemble(archive + noise(8000, 4), QStringLiteral("main.exe")));
    QCOMPARE(result.exitCode, 7);
}

// The payload is unpacked and the program waits; the module's high-water mark is read meanwhile.
void TestSelfExtractor::staysSmallInMemory()
{
    const QByteArray archive = packTree({{QStringLiteral("main.exe"), programBytes()},
                                         {QStringLiteral("big.bin"), QByteArray(300 << 20, 'x')}},
                                        {QStringLiteral("-mx=1"), QStringLiteral("-m0=LZMA:d=4m")});
    QProcess process;
    prepare(process);
    process.start(QStringLiteral("wine"),
                  {assemble(archive, QStringLiteral("main.exe")), QStringLiteral("--memory")});
    QVERIFY(process.waitForReadyRead(120000));
    qint64 peak = -1;
    const QByteArray status
        = contentOf(QStringLiteral("/proc/%1/status").arg(process.processId()));
    for (const QByteArray &line : status.split('\n')) {
        if (line.startsWith("VmHWM:")) {
            peak = line.mid(6).trimmed().split(' ').first().toLongLong();
        }
    }
    process.write("\n");
    process.closeWriteChannel();
    QVERIFY(process.waitForFinished(60000));
    QCOMPARE(process.exitCode(), 7);
    qInfo("peak: %lld KiB", static_cast<long long>(peak));
    QVERIFY(peak > 0);
    QVERIFY(peak < 64 * 1024);
}

void TestSelfExtractor::cleansUpOnAFullDisk()
{
    if (geteuid() != 0) {
        QSKIP("only root can mount a small disk");
    }
    const QByteArray mountPoint = QFile::encodeName(m_temporary);
    if (mount("none", mountPoint.constData(), "tmpfs", 0, "size=4m") != 0) {
        QSKIP("no disk can be mounted here");
    }
    const QString file
        = assemble(Tree{{QStringLiteral("main.exe"), programBytes()},
                        {QStringLiteral("big.bin"), QByteArray(16 << 20, 'x')}},
                   QStringLiteral("main.exe"));
    const Run result = run(file);
    const QStringList left = leftovers();
    umount2(mountPoint.constData(), MNT_DETACH);
    QCOMPARE(result.exitCode, lowByte(ExitCode::DiskFull));
    QCOMPARE(left, QStringList());
}

QTEST_GUILESS_MAIN(TestSelfExtractor)
#include "tst_selfextractor.moc"
