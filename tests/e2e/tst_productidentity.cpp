// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/worker.h"
#include "preparation/identity.h"
#include "preparation/preparedmodule.h"
#include "preparation/programicon.h"
#include "tests/e2e/productrun.h"
#include "tests/fakes/fakeplatform.h"
#include "tests/fakes/privatetemp.h"
#include "tests/support/testfiles.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <QTest>

namespace {

// Prints the subsystem, the check sum and all version information, as JSON.
const char *const pefileScript = R"(
import json, pefile, sys
program = pefile.PE(sys.argv[1])
tables = []
for info in program.FileInfo:
    for block in info:
        for table in getattr(block, 'StringTable', []):
            strings = {key.decode(): value.decode() for key, value in table.entries.items()}
            tables.append({'key': table.LangID.decode(), 'strings': strings})
print(json.dumps({
    'subsystem': program.OPTIONAL_HEADER.Subsystem,
    'checkSum': program.OPTIONAL_HEADER.CheckSum,
    'versions': [[part.FileVersionMS, part.FileVersionLS] for part in program.VS_FIXEDFILEINFO],
    'tables': tables,
    'warnings': program.get_warnings()}))
)";

} // namespace

// Reads a product's identity with programs that are not ours: python3-pefile and icoutils.
class TestProductIdentity : public QObject
{
    Q_OBJECT

private:
    PrivateTemp m_temp;
    QString m_product;

    // Packs the program with a prepared module and its whole icon, as kestrelpack-cli does.
    void pack()
    {
        const QString folder = m_temp.filePath("app");
        const QString main = folder + "/tone.exe";
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(QFile::copy(builtFile(KESTRELPACK_IDENTIFIED), main));
        const QString icon = m_temp.filePath("main.ico");
        QVERIFY(writeFile(icon, iconFileOfProgram(main)));
        const auto read = readMainProgram(main);
        const auto &program = std::get<MainProgram>(read);
        const auto identity
            = identityOf(program.identity, "tone.exe",
                         {{"CompanyName", "Example & Töchter"}, {"FileVersion", "7.8.9"}});
        const auto refused = writePreparedModule(
            {kindOf(program.header), {}, std::get<std::vector<pe::VersionResource>>(identity)},
            m_temp.path());
        QVERIFY(!refused);

        FakePlatform platform;
        Worker worker;
        bool success = false;
        connect(&worker, &Worker::finished, &worker, [&success](bool done) { success = done; });
        connect(&worker, &Worker::logMessage, &worker,
                [](const QString &line) { qInfo().noquote() << line; });
        worker.createPortableApp(folder, m_temp.filePath("temp.7z"), m_temp.path(), "tone.exe",
                                 icon, "5", "LZMA", "16M");
        QVERIFY(success);
    }

    static void expectStrings(const QJsonObject &table, const QString &key,
                              const QString &description)
    {
        QCOMPARE(table["key"].toString().toLower(), key);
        const QJsonObject strings = table["strings"].toObject();
        QCOMPARE(strings["FileDescription"].toString(), description);
        QCOMPARE(strings["OriginalFilename"].toString(), "tone.exe");
        QCOMPARE(strings["CompanyName"].toString(), "Example & Töchter");
        QCOMPARE(strings["FileVersion"].toString(), "7.8.9");
    }

private slots:
    void initTestCase()
    {
        m_product = m_temp.filePath("tone.exe");
        pack();
    }

    void pefileReadsEveryTable()
    {
        if (runProgram("/usr/bin/python3", {"-c", "import pefile"}).exitCode != 0) {
            QSKIP("python3-pefile is not installed");
        }
        const ProgramRun run = runProgram("/usr/bin/python3", {"-c", pefileScript, m_product});
        QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
        const QJsonObject found = QJsonDocument::fromJson(run.output.toUtf8()).object();
        QCOMPARE(found["subsystem"].toInt(), 3);
        QCOMPARE(found["checkSum"].toInt(), 0);
        QCOMPARE(found["warnings"].toArray(), QJsonArray());
        const QJsonArray version{(7 << 16) | 8, 9 << 16};
        QCOMPARE(found["versions"].toArray(), (QJsonArray{version, version}));
        const QJsonArray tables = found["tables"].toArray();
        QCOMPARE(tables.size(), 3);
        expectStrings(tables[0].toObject(), "040904b0", "Tone generator");
        expectStrings(tables[1].toObject(), "040704b0", "Tongenerator für alle");
        expectStrings(tables[2].toObject(), "080404b0", "音频发生器");
    }

    void icoutilsReadTheSameResources()
    {
        if (QStandardPaths::findExecutable("wrestool").isEmpty()) {
            QSKIP("wrestool (package icoutils) is not installed");
        }
        const ProgramRun list = runProgram("wrestool", {"-l", "-t16", m_product});
        QVERIFY2(list.output.contains("--type=16 --name=1 --language=1033")
                     && list.output.contains("--type=16 --name=1 --language=2052"),
                 qPrintable(list.output));
        QCOMPARE(list.output.count('\n'), 2);
        const QString icon = m_temp.filePath("read.ico");
        QCOMPARE(runProgram("wrestool", {"-x", "-t14", "-o", icon, m_product}).exitCode, 0);
        const QByteArray expected = readFile(m_temp.filePath("main.ico"));
        QVERIFY(expected.size() > 40000);
        // wrestool writes some bytes after the last image.
        QCOMPARE(readFile(icon).left(expected.size()), expected);
    }
};

QTEST_GUILESS_MAIN(TestProductIdentity)
#include "tst_productidentity.moc"
