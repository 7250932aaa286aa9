// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/cli/clirun.h"
#include "tests/helpers/pe/petest.h"

#include <QCryptographicHash>
#include <QTest>

#include <memory>

#include <sys/stat.h>

using Environment = QMap<QString, QString>;

namespace {

// Where and how a job runs, apart from its options.
struct Circumstances
{
    QString place = "source";     // of the folder, below the test's one
    bool isReversed = false;      // the order in which its files are made
    mode_t mode = 0644;           // of its files
    QStringList further = {};     // names of more files
    QString before = "umask 022"; // commands of the shell that starts the job
    Environment environment = {};
};

struct Content
{
    QString name;
    QByteArray bytes;
};

// Two solid blocks. LZMA2 divides large ones on machines with four and more processors; tst_reproducible
// tells the archiver how many there are, so it shows that on any machine.
QList<Content> contents()
{
    QByteArray numbers;
    for (int i = 0; i < 60000; ++i) {
        numbers += QByteArray::number(i * 31 % 100003) + ' ';
    }
    return {{"app.exe", petest::makeProgram({.resources = false})},
            {"a.txt", numbers},
            {"data/文件.txt", "text"},
            {"data/inner/z.dll", numbers.left(100000)}};
}

} // namespace

// The same input gives the same bytes on every machine, with any settings and any options for the
// times are.
class TestReproducibleJobs : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_temp = std::make_unique<PrivateTemp>(); }
    void cleanup() { m_temp.reset(); }
    void theSameInputGivesTheSameBytes_data();
    void theSameInputGivesTheSameBytes();
    void otherTimesGiveOtherBytes();
    void otherContentGivesOtherBytes();

private:
    bool makeSource(const Circumstances &circumstances) const;
    QByteArray packed(const Circumstances &circumstances, const QStringList &options) const;
    QString path(const QString &name) const { return m_temp->filePath(name); }

    std::unique_ptr<PrivateTemp> m_temp;
};

bool TestReproducibleJobs::makeSource(const Circumstances &circumstances) const
{
    const QDir dir(path(circumstances.place));
    QList<Content> files = contents();
    if (circumstances.isReversed) {
        std::reverse(files.begin(), files.end());
    }
    for (const QString &name : circumstances.further) {
        files.append({name, "more"});
    }
    for (const Content &file : files) {
        const QString name = dir.filePath(file.name);
        if (!QDir().mkpath(QFileInfo(name).path()) || !writeFile(name, file.bytes)
            || chmod(name.toUtf8().constData(), circumstances.mode) != 0) {
            return false;
        }
    }
    return true;
}

// The product, or what the job said. The folder is removed.
QByteArray TestReproducibleJobs::packed(const Circumstances &circumstances,
                                        const QStringList &options) const
{
    if (!makeSource(circumstances)) {
        return "the folder could not be made";
    }
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("SOURCE_DATE_EPOCH");
    for (auto each = circumstances.environment.begin(); each != circumstances.environment.end();
         ++each) {
        environment.insert(each.key(), each.value());
    }
    process.setProcessEnvironment(environment);
    process.start("/bin/sh",
                  QStringList{"-c", circumstances.before + "; exec \"$0\" \"$@\"",
                              builtFile(KESTRELPACK_CLI), "-q", "-o", path("out/app.exe")}
                      + options + QStringList{path(circumstances.place)});
    const CliResult result = CliSurroundings::resultOf(process);
    QDir(path(circumstances.place)).removeRecursively();
    return result.exitStatus == 0 && result.errors.isEmpty() ? readFile(path("out/app.exe"))
                                                             : result.errors.toUtf8();
}

void TestReproducibleJobs::theSameInputGivesTheSameBytes_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<Environment>("environment");
    const auto row
        = [](const char *name, const QStringList &options, const Environment &environment = {}) {
              QTest::newRow(name) << options << environment;
          };
    const QStringList plain{"--reproducible"};
    row("as it is by default", plain);
    row("a time", plain + QStringList{"--mtime", "2020-01-31T12:00:00Z"});
    row("a time in the environment", plain, {{"SOURCE_DATE_EPOCH", "1500000000"}});
    for (const QString method : {"LZMA", "LZMA2"}) {
        for (const QString level : {"store", "fastest", "normal"}) {
            row(qPrintable(method + ", " + level), plain + QStringList{"-c", method, "-l", level});
        }
    }
    for (const QString profile : {"fast-start", "small"}) {
        row(qPrintable("profile " + profile), plain + QStringList{"--profile", profile});
    }
    row("files are left out", plain + QStringList{"--exclude", "*.pdb", "--exclude", ".git/"});
    row("settings and an identity",
        plain + QStringList{"--title", "音", "--arguments", "-x", "--set", "ProductName=音"});
}

void TestReproducibleJobs::theSameInputGivesTheSameBytes()
{
    QFETCH(QStringList, options);
    QFETCH(Environment, environment);
    const bool excludes = options.contains("--exclude");
    Circumstances here;
    here.further = excludes ? QStringList{"debug.pdb", ".git/config"} : QStringList();
    here.environment = environment;
    here.environment.insert("LC_ALL", "C.UTF-8");
    const QByteArray first = packed(here, options);
    QVERIFY2(first.startsWith("MZ"), first.left(1000).constData());

    for (const QString name : {"home", "temp"}) {
        QVERIFY(QDir().mkpath(path(name)));
    }
    Circumstances elsewhere;
    elsewhere.place = "another place/with blanks/程序";
    elsewhere.isReversed = true;
    elsewhere.mode = 0755;
    elsewhere.further = excludes ? here.further + QStringList{"data/app.pdb", ".git/objects/ab"}
                                 : QStringList();
    elsewhere.before = "umask 077; taskset -p 1 $$ >/dev/null";
    elsewhere.environment = environment;
    elsewhere.environment.insert("LC_ALL", "zh_CN.UTF-8");
    elsewhere.environment.insert("TZ", "Asia/Shanghai");
    elsewhere.environment.insert("HOME", path("home"));
    elsewhere.environment.insert("TMPDIR", path("temp"));
    const QByteArray second = packed(elsewhere, options);
    QVERIFY2(second.startsWith("MZ"), second.left(1000).constData());
    QVERIFY(second == first);
}

// Otherwise the rows would show nothing.
void TestReproducibleJobs::otherTimesGiveOtherBytes()
{
    const QStringList plain{"--reproducible"};
    const QByteArray first = packed({}, plain + QStringList{"--mtime", "1500000000"});
    QVERIFY2(first.startsWith("MZ"), first.left(1000).constData());
    QVERIFY(packed({}, plain + QStringList{"--mtime", "1500000001"}) != first);
    Circumstances inTheEnvironment;
    inTheEnvironment.environment = {{"SOURCE_DATE_EPOCH", "1500000000"}};
    QCOMPARE(packed(inTheEnvironment, plain), first);
}

void TestReproducibleJobs::otherContentGivesOtherBytes()
{
    const QByteArray first = packed({}, {"--reproducible"});
    QVERIFY2(first.startsWith("MZ"), first.left(1000).constData());
    Circumstances more;
    more.further = {"debug.pdb"};
    QVERIFY(packed(more, {"--reproducible"}) != first);
}

QTEST_GUILESS_MAIN(TestReproducibleJobs)
#include "tst_reproduciblejobs.moc"
