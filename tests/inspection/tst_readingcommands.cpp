// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/cli/clirun.h"
#include "tests/inspection/forgedproduct.h"
#include "tests/support/builtfile.h"

#include <QJsonDocument>
#include <QTest>

class TestReadingCommands : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_surroundings.reset(); }
    void aWholeFile();
    void aDamagedFile();
    void extractTakesItsNameFromTheFile();
    void aFileThatIsNotThere();

private:
    CliResult run(const QStringList &arguments) const
    {
        QProcess process;
        process.setWorkingDirectory(m_surroundings->path("output"));
        process.start(builtFile(KESTRELPACK_CLI), QStringList{"--language", "en"} + arguments);
        return CliSurroundings::resultOf(process);
    }

    std::unique_ptr<CliSurroundings> m_surroundings;
    QString m_product;
};

void TestReadingCommands::init()
{
    m_surroundings = std::make_unique<CliSurroundings>();
    m_surroundings->write("my tool.exe", ForgedProduct().bytes());
    m_product = m_surroundings->path("my tool.exe");
}

void TestReadingCommands::aWholeFile()
{
    const CliResult verified = run({"verify", m_product});
    QCOMPARE(verified.exitStatus, 0);
    QVERIFY2(verified.output.contains("all checksums are right"), qPrintable(verified.output));
    QCOMPARE(verified.errors, QString());
    QCOMPARE(run({"verify", "--quiet", m_product}).output, QString());

    const CliResult inspected = run({"inspect", m_product});
    QCOMPARE(inspected.exitStatus, 0);
    QVERIFY2(inspected.output.contains("main.exe"), qPrintable(inspected.output));

    const CliResult json = run({"inspect", "--json", m_product});
    QCOMPARE(json.exitStatus, 0);
    const QJsonDocument document = QJsonDocument::fromJson(json.output.toUtf8());
    QCOMPARE(document["block"]["runProgram"].toString(), "main.exe");
    QCOMPARE(document["program"]["ownModule"].toBool(), true);
}

void TestReadingCommands::aDamagedFile()
{
    ForgedProduct product;
    product.archive[product.archive.indexOf("the program")] = 'T';
    m_surroundings->write("my tool.exe", product.bytes());
    for (const QStringList &command : {QStringList{"verify"}, QStringList{"inspect", "--json"},
                                       QStringList{"extract", "-o", "out"}}) {
        const CliResult result = run(command + QStringList{m_product});
        QCOMPARE(result.exitStatus, 1);
        QCOMPARE(result.output, QString());
        QVERIFY2(result.errors.contains("damaged") && result.errors.contains("(201)"),
                 qPrintable(result.errors));
    }
    QCOMPARE(m_surroundings->namesIn("output"), QStringList());
}

void TestReadingCommands::extractTakesItsNameFromTheFile()
{
    QCOMPARE(run({"extract", m_product}).exitStatus, 0);
    QCOMPARE(m_surroundings->namesIn("output/my tool"),
             (QStringList{"data", "fixed.ini", "main.exe"}));
    const CliResult again = run({"extract", m_product});
    QCOMPARE(again.exitStatus, 2);
    QVERIFY2(again.errors.contains("is not empty"), qPrintable(again.errors));
    QVERIFY(QFile::setPermissions(m_surroundings->path("output/my tool/fixed.ini"),
                                  QFile::ReadOwner | QFile::WriteOwner));
}

void TestReadingCommands::aFileThatIsNotThere()
{
    const CliResult result = run({"verify", "missing.exe"});
    QCOMPARE(result.exitStatus, 2);
    QVERIFY2(result.errors.contains("missing.exe"), qPrintable(result.errors));
}

QTEST_GUILESS_MAIN(TestReadingCommands)

#include "tst_readingcommands.moc"
