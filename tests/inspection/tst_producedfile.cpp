// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "inspection/producedfile.h"

#include "helpers/pe/programedit.h"
#include "helpers/pe/programheader.h"
#include "helpers/pe/versioninfo.h"
#include "inspection/contentcheck.h"
#include "inspection/report.h"
#include "platform/nativepath.h"
#include "tests/inspection/forgedproduct.h"
#include "tests/support/testfiles.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

using Forge = std::function<void(ForgedProduct &)>;
Q_DECLARE_METATYPE(Forge)

class TestProducedFile : public QObject
{
    Q_OBJECT

private slots:
    void aWholeFile();
    void refused_data();
    void refused();
    void aDamagedFileIsNamed();
    void aFileThatCannotBeOpened();
    void theModule_data();
    void theModule();
    void aModuleWithAnIdentity();
    void report();
    void namesZstandard();
    void settings();
    void settingsInTheText();
    void keptFolder();
    void aUsualFileKeepsNothing();

private:
    QString write(const QByteArray &bytes) const
    {
        const QString path = m_dir.filePath("product.exe");
        if (!writeFile(path, bytes)) {
            qFatal("the product could not be written");
        }
        return path;
    }

    // Returns an empty object if the product cannot be read.
    QJsonObject reportOfProduct(const ForgedProduct &product) const
    {
        ProducedFile file;
        if (!file.open(write(product.bytes())).isEmpty() || file.check()) {
            return {};
        }
        const auto facts = programFactsOf(file.file());
        return facts ? reportOf(file, *facts) : QJsonObject();
    }

    QTemporaryDir m_dir;
};

void TestProducedFile::aWholeFile()
{
    const ForgedProduct product;
    ProducedFile file;
    QCOMPARE(file.open(write(product.bytes())), QString());
    QVERIFY(!file.check());
    QCOMPARE(toQString(file.plan().program()), "main.exe");
    QCOMPARE(file.archiveOffset(), quint64(product.module.size() + product.block.size()));
    QCOMPARE(file.archive().entryCount(), 4u);
    QCOMPARE(file.totalBytes(), quint64(11 + 16 + 9));
    FileHashes hashes;
    QVERIFY(!checkContent(file, &hashes));
    QCOMPARE(hashes.size(), 3);
    QCOMPARE(hashes.value("data/文件.txt"),
             QCryptographicHash::hash("text in a folder", QCryptographicHash::Sha256));
}

void TestProducedFile::refused_data()
{
    QTest::addColumn<Forge>("change");
    QTest::addColumn<int>("number");
    const auto row = [](const char *name, const Forge &change, int number) {
        QTest::newRow(name) << change << number;
    };
    const auto withFile = [](const QString &name, quint32 attributes = 0x20) {
        return [name, attributes](ForgedProduct &product) {
            auto files = forgedFiles();
            files.append({name, "more", false, false, attributes});
            product.setFiles(files);
        };
    };
    row(
        "no program at all", [](ForgedProduct &product) { product.module = "text"; }, 201);
    row(
        "no block", [](ForgedProduct &product) { product.block.clear(); }, 201);
    row(
        "no archive", [](ForgedProduct &product) { product.archive.clear(); }, 201);
    row(
        "the last byte is missing", [](ForgedProduct &product) { product.archive.chop(1); }, 201);
    row("a link of Unix", withFile("link", 0xa1ff8000), 202);
    row("a name that leads out of the folder", withFile("../out.txt"), 203);
    row("the name of a device", withFile("nul.txt"), 203);
    row("names that differ in case only", withFile("MAIN.EXE"), 203);
    row(
        "names that differ in case only, not in ASCII",
        [](ForgedProduct &product) {
            product.setFiles({{"main.exe", "x"}, {"ä.txt", "x"}, {"Ä.txt", "x"}});
        },
        203);
    row(
        "without the program",
        [](ForgedProduct &product) {
            product.setFiles({{"other.exe", "x"}});
        },
        209);
    row(
        "settings that are damaged",
        [](ForgedProduct &product) { product.setSettings("Colour=\"red\"\n"); }, 201);
    row(
        "settings with a program that leads out",
        [](ForgedProduct &product) { product.setSettings("Program=\"../main.exe\"\n"); }, 201);
    row(
        "settings with a program that is not there",
        [](ForgedProduct &product) { product.setSettings("Program=\"data/main.exe\"\n"); }, 209);
    row(
        "settings with a folder as the program",
        [](ForgedProduct &product) { product.setSettings("Program=\"data\"\n"); }, 209);
    row(
        "a program in a folder without settings",
        [](ForgedProduct &product) { product.block.replace("main.exe", "data/main.exe"); }, 201);
}

void TestProducedFile::refused()
{
    QFETCH(const Forge, change);
    ForgedProduct product;
    change(product);
    ProducedFile file;
    QCOMPARE(file.open(write(product.bytes())), QString());
    const auto finding = file.check();
    QVERIFY(finding);
    QTEST(finding->number, "number");
    QVERIFY(!finding->text.isEmpty());
}

void TestProducedFile::aDamagedFileIsNamed()
{
    ForgedProduct product;
    const qsizetype content = product.archive.indexOf("text in a folder");
    QVERIFY(content > 0);
    product.archive[content] = 'T';
    ProducedFile file;
    QCOMPARE(file.open(write(product.bytes())), QString());
    QVERIFY(!file.check()); // nothing is decoded here
    const auto finding = checkContent(file);
    QVERIFY(finding);
    QCOMPARE(finding->number, 201);
    QVERIFY2(finding->text.endsWith(": data/文件.txt"), qPrintable(finding->text));
}

void TestProducedFile::aFileThatCannotBeOpened()
{
    ProducedFile missing;
    QVERIFY(!missing.open(m_dir.filePath("missing.exe")).isEmpty());
    ProducedFile folder;
    QVERIFY(!folder.open(m_dir.path()).isEmpty());
}

void TestProducedFile::theModule_data()
{
    QTest::addColumn<qsizetype>("changed"); // offset of a byte in the module, or -1
    QTest::addColumn<bool>("isOwn");
    const ForgedProduct product;
    QTest::newRow("unchanged") << qsizetype(-1) << true;
    QTest::newRow("a byte of its code") << qsizetype(0x500) << false;
    QTest::newRow("a byte of its resources") << product.module.size() - 1 << true;
}

void TestProducedFile::theModule()
{
    QFETCH(const qsizetype, changed);
    ForgedProduct product;
    if (changed >= 0) {
        product.module[changed] = static_cast<char>(~product.module.at(changed));
    }
    ProducedFile file;
    QCOMPARE(file.open(write(product.bytes())), QString());
    const auto facts = programFactsOf(file.file());
    QVERIFY(facts);
    QCOMPARE(facts->machine, "x64");
    QCOMPARE(facts->subsystem, "windows");
    QVERIFY(!facts->isSigned);
    QTEST(facts->hasOwnModule, "isOwn");
}

// The subsystem and the resources of a genuine module may differ from the bundle's.
void TestProducedFile::aModuleWithAnIdentity()
{
    const auto path = toNativePath(write(ForgedProduct().bytes()));
    pe::VersionInfo info;
    pe::setVersionString(info, u"FileDescription", u"音 maker");
    const pe::ProgramEdit edit{
        .subsystem = pe::subsystemConsole,
        .resources = {{{std::nullopt, pe::versionType},
                       {std::nullopt, 1},
                       0x409,
                       pe::writeVersionInfo(info).value()},
                      {{std::nullopt, pe::rcDataType}, {u"LARGE", 0}, 0, pe::Bytes(100000, 1)}}};
    QVERIFY(!pe::editProgram(path, path, edit).hasError());
    ProducedFile file;
    QCOMPARE(file.open(m_dir.filePath("product.exe")), QString());
    QVERIFY(!file.check());
    const auto facts = programFactsOf(file.file());
    QVERIFY(facts);
    QVERIFY(facts->hasOwnModule);
    const QJsonObject program = reportOf(file, *facts)["program"].toObject();
    QCOMPARE(program["subsystem"].toString(), "console");
    QCOMPARE(program["identity"].toObject(), (QJsonObject{{"FileDescription", "音 maker"}}));
}

void TestProducedFile::namesZstandard()
{
    ForgedProduct product;
    forge::ArchivePlan plan(forgedFiles());
    plan.folders[0].coders[0].method = QByteArray::fromHex("04f71101");
    product.archive = forge::archiveOf(plan);
    const QJsonObject report = reportOfProduct(product);
    QCOMPARE(report["archive"]["methods"].toArray(), QJsonArray({"Zstandard"}));
}

void TestProducedFile::report()
{
    ProducedFile file;
    QCOMPARE(file.open(write(ForgedProduct().bytes())), QString());
    QVERIFY(!file.check());
    FileHashes hashes;
    QVERIFY(!checkContent(file, &hashes));
    const auto facts = programFactsOf(file.file());
    QVERIFY(facts);
    const QJsonObject report = reportOf(file, *facts, hashes);
    QCOMPARE(report["block"]["runProgram"].toString(), "main.exe");
    QCOMPARE(report["archive"]["methods"].toArray(), QJsonArray({"Copy"}));
    QCOMPARE(report["archive"]["unpackedSize"].toInt(), 36);
    QCOMPARE(report["program"]["identity"].toObject(), QJsonObject());
    const QJsonArray entries = report["entries"].toArray();
    QCOMPARE(entries.size(), 4);
    QCOMPARE(entries.at(2)["isFolder"].toBool(), true);
    QCOMPARE(entries.at(1)["attributes"].toString(), "RA");
    QCOMPARE(entries.at(0)["sha256"].toString().size(), 64);
    const QString text = textOf(report);
    QVERIFY(text.contains("data/文件.txt"));
    QVERIFY(text.contains("36 bytes in 4 entries"));
    QCOMPARE(report["start"]["kind"].toString(), "graphical");
    QCOMPARE(report["settings"].toObject(), QJsonObject());
    QVERIFY(!text.contains("\nsettings"));
}

void TestProducedFile::settings()
{
    ForgedProduct product;
    product.setFiles({{"bin", {}, true}, {"bin/app.exe", "the program"}});
    product.block.replace("main.exe", "bin/app.exe").replace("\\folder", "\\bin/app");
    product.setSettings("Program=\"bin/app.exe\"\nFolder=\"app\"\nArguments=\"--x \"y z\"\"\n"
                        "WorkingFolder=\"caller\"\n",
                        true);
    ProducedFile file;
    QCOMPARE(file.open(write(product.bytes())), QString());
    QVERIFY(!file.check());
    const auto facts = programFactsOf(file.file());
    QVERIFY(facts);
    QVERIFY(facts->hasOwnModule); // neither settings nor kind change that
    const QJsonObject report = reportOf(file, *facts);
    QCOMPARE(report["start"].toObject(),
             (QJsonObject{{"kind", "console"},
                          {"program", "bin/app.exe"},
                          {"arguments", "--x \"y z\""},
                          {"workingFolder", "caller"},
                          {"folder", "app"},
                          {"title", "A title"},
                          {"silent", false},
                          {"progress", false}}));
    QCOMPARE(report["settings"].toObject(),
             (QJsonObject{{"program", "bin/app.exe"},
                          {"folder", "app"},
                          {"arguments", "--x \"y z\""},
                          {"workingFolder", "caller"}}));
    QCOMPARE(report["block"]["runProgram"].toString(), QString());
}

void TestProducedFile::settingsInTheText()
{
    ForgedProduct product;
    product.setSettings("Title=\"Other\"\nSilent=\"1\"\nArguments=\"-a\"\n");
    const QJsonObject report = reportOfProduct(product);
    QCOMPARE(report["settings"].toObject(),
             (QJsonObject{{"title", "Other"}, {"silent", true}, {"arguments", "-a"}}));
    const QString text = textOf(report);
    for (const char *line :
         {"\nkind          graphical\n", "\nstarts        main.exe -a\n", "\nworks in      app\n",
          "\ntitle         Other\n", "\nsilent        yes\n", "\nsettings      arguments: -a\n",
          "\n              silent: true\n", "\n              title: Other\n"}) {
        QVERIFY2(text.contains(QLatin1String(line)), qPrintable(line + text));
    }
}

void TestProducedFile::keptFolder()
{
    ForgedProduct product;
    product.setSettings("Keep=\"30\"\nKeepVerify=\"1\"\nProduct=\"A | B\"\n");
    const QJsonObject report = reportOfProduct(product);
    QCOMPARE(report["settings"].toObject(),
             (QJsonObject{{"keep", 30}, {"keepVerify", true}, {"product", "A | B"}}));
    const QJsonObject keep = report["start"]["keep"].toObject();
    QCOMPARE(keep["days"].toInt(), 30);
    QCOMPARE(keep["compares"].toString(), QString("contents"));
    const QString folder = keep["folder"].toString();
    QVERIFY2(QRegularExpression("^%LOCALAPPDATA%\\\\Kestrelpack\\\\[0-9a-f]{64}$")
                 .match(folder)
                 .hasMatch(),
             qPrintable(folder));
    const QString line = "\nkeeps         30 days in " + folder + ", compares contents\n";
    QVERIFY2(textOf(report).contains(line), qPrintable(textOf(report)));
}

void TestProducedFile::aUsualFileKeepsNothing()
{
    const ForgedProduct product;
    const QJsonObject start = reportOfProduct(product)["start"].toObject();
    QVERIFY(start.contains("program"));
    QVERIFY(!start.contains("keep"));
}

QTEST_GUILESS_MAIN(TestProducedFile)

#include "tst_producedfile.moc"
