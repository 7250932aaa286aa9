// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/sfxtest.h"

#include <QDateTime>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace sfx;

namespace {

// The method lines of the archiver's own listing. They show which filters the archive really has.
QByteArray methodsOf(const QByteArray &archive)
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("a.7z")));
    if (!file.open(QIODevice::WriteOnly) || file.write(archive) != archive.size()) {
        return QByteArray();
    }
    file.close();
    QProcess process;
    process.start(QStringLiteral(KESTRELPACK_TEST_ARCHIVER),
                  {QStringLiteral("l"), QStringLiteral("-slt"), file.fileName()});
    process.waitForFinished(-1);
    QByteArray methods;
    for (const QByteArray &line : process.readAllStandardOutput().split('\n')) {
        if (line.startsWith("Method = ")) {
            methods += line.mid(9) + '\n';
        }
    }
    return methods;
}

} // namespace

class TestUnpacker : public QObject
{
    Q_OBJECT

private slots:
    void unpacksEveryLevelAndMethod_data();
    void unpacksEveryLevelAndMethod();
    void unpacksEveryFilter_data();
    void unpacksEveryFilter();
    void ignoresWhatLiesAround();
    void keepsTimes();
    void unpacksManyFiles();
    void makesShortNamesFirst();
    void refusesWhatItCannotDo_data();
    void refusesWhatItCannotDo();
    void refusesLinks();
    void needsTheProgram();
};

void TestUnpacker::unpacksEveryLevelAndMethod_data()
{
    QTest::addColumn<QStringList>("switches");
    for (const char *method : {"LZMA", "LZMA2"}) {
        for (int level : {0, 1, 3, 5, 7, 9}) {
            QTest::addRow("%s at level %d", method, level)
                << QStringList{QStringLiteral("-mx=%1").arg(level),
                               QStringLiteral("-m0=") + QLatin1String(method)};
        }
    }
    QTest::newRow("an unpacked header") << QStringList{"-mhc=off"};
    QTest::newRow("files packed one by one") << QStringList{"-ms=off"};
    QTest::newRow("a window smaller than the files") << QStringList{"-m0=LZMA:d=64k"};
    QTest::newRow("LZMA with an end mark") << QStringList{"-m0=LZMA:eos"};
    QTest::newRow("LZMA2 in blocks") << QStringList{"-m0=LZMA2:c=256k:d=64k"};
}

void TestUnpacker::unpacksEveryLevelAndMethod()
{
    QFETCH(QStringList, switches);
    Tree packed = mixedTree();
    packed[QStringLiteral("main.exe")].truncate(400000);
    const QByteArray archive = packTree(packed, switches);
    QVERIFY(!archive.isEmpty());
    Tree unpacked;
    QCOMPARE(unpackBytes(archive, 0, unpacked), Status::Ok);
    QCOMPARE(unpacked.keys(), packed.keys());
    QVERIFY(unpacked == packed);
}

void TestUnpacker::unpacksEveryFilter_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QByteArray>("listed");
    const auto row = [](const char *filter, const char *listed) {
        QTest::newRow(filter) << QString::fromLatin1(filter) << QByteArray(listed);
    };
    row("BCJ", "BCJ");
    row("BCJ2", "BCJ2");
    row("ARM", "ARM");
    row("ARMT", "ARMT");
    row("ARM64", "ARM64");
    row("PPC", "PPC");
    row("SPARC", "SPARC");
    row("IA64", "IA64");
    row("RISCV", "RISCV");
    row("Delta:1", "Delta");
    row("Delta:4", "Delta:4");
    row("Delta:256", "Delta:256");
}

void TestUnpacker::unpacksEveryFilter()
{
    QFETCH(QString, filter);
    QFETCH(QByteArray, listed);
    Tree packed = mixedTree();
    packed[QStringLiteral("main.exe")].truncate(200000);
    packed[QStringLiteral("text/long.txt")].truncate(50000);
    for (const char *method : {"LZMA", "LZMA2", "Copy"}) {
        const QByteArray archive
            = packTree(packed,
                       {QStringLiteral("-mf=") + filter, QStringLiteral("-mx=3"),
                        QStringLiteral("-m0=") + QLatin1String(method)});
        QVERIFY(!archive.isEmpty());
        QVERIFY2(methodsOf(archive).contains(listed), methodsOf(archive).constData());
        Tree unpacked;
        QCOMPARE(unpackBytes(archive, 0, unpacked), Status::Ok);
        QVERIFY(unpacked == packed);
    }
}

void TestUnpacker::ignoresWhatLiesAround()
{
    const Tree packed{{QStringLiteral("main.exe"), noise(70000, 1)}};
    const QByteArray archive = packTree(packed, {});
    Tree unpacked;
    QCOMPARE(unpackBytes(noise(12345, 2) + archive + noise(4000, 3), 12345, unpacked), Status::Ok);
    QVERIFY(unpacked == packed);
}

void TestUnpacker::keepsTimes()
{
    QTemporaryDir folder;
    QVERIFY(writeTree(folder.path(), {{QStringLiteral("main.exe"), "x"}}));
    QFile file(folder.filePath(QStringLiteral("main.exe")));
    const QDateTime time = QDateTime::fromSecsSinceEpoch(1234567890, Qt::UTC);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
    file.close();
    MemorySource source(pack(folder.path(), {}));
    Archive archive(source);
    Entry entry;
    QCOMPARE(archive.open(0), Status::Ok);
    QCOMPARE(archive.entry(0, entry), Status::Ok);
    QVERIFY(entry.hasModified);
    // Windows counts units of 100 ns from the year 1601, which began 11644473600 s before 1970.
    QCOMPARE(entry.modified, (1234567890u + 11644473600ull) * 10000000u);
}

void TestUnpacker::unpacksManyFiles()
{
    Tree packed{{QStringLiteral("main.exe"), "x"}};
    for (int i = 0; i < 2000; ++i) {
        packed.insert(QStringLiteral("d/f%1").arg(i), QByteArray::number(i));
    }
    packed.insert(QStringLiteral("d/"), QByteArray());
    Tree unpacked;
    QCOMPARE(unpackBytes(packTree(packed, {}), 0, unpacked), Status::Ok);
    QVERIFY(unpacked == packed);
}

// Otherwise Windows gives their names to other files and folders.
void TestUnpacker::makesShortNamesFirst()
{
    const Tree packed{{QStringLiteral("A long name.txt"), "first in the archive"},
                      {QStringLiteral("ALONGN~1.TXT"), "content"},
                      {QStringLiteral("EMPTY~1.TXT"), ""},
                      {QStringLiteral("a folder/file.txt"), "x"},
                      {QStringLiteral("a folder/"), QByteArray()},
                      {QStringLiteral("AFOLDE~1/"), QByteArray()},
                      {QStringLiteral("main.exe"), "x"}};
    MemorySource source(packTree(packed, {}));
    Archive archive(source);
    TreeSink sink;
    QCOMPARE(archive.open(0), Status::Ok);
    QCOMPARE(unpack(archive, sink, 1), Status::Ok);
    QVERIFY(sink.isConsistent);
    QVERIFY(sink.tree == packed);
    QStringList first = sink.order.mid(0, 3);
    first.sort();
    QCOMPARE(first, QStringList({"AFOLDE~1", "ALONGN~1.TXT", "EMPTY~1.TXT"}));
    QCOMPARE(sink.order.count(QStringLiteral("ALONGN~1.TXT")), 2);
    QCOMPARE(sink.order.count(QStringLiteral("EMPTY~1.TXT")), 1);
}

void TestUnpacker::refusesWhatItCannotDo_data()
{
    QTest::addColumn<QStringList>("switches");
    QTest::newRow("encrypted files") << QStringList{"-psecret"};
    QTest::newRow("an encrypted header") << QStringList{"-psecret", "-mhe=on"};
    QTest::newRow("a filter of another kind") << QStringList{"-mf=SWAP2"};
}

void TestUnpacker::refusesWhatItCannotDo()
{
    QFETCH(QStringList, switches);
    const QByteArray archive = packTree({{QStringLiteral("main.exe"), noise(5000, 1)}}, switches);
    QVERIFY(!archive.isEmpty());
    Tree unpacked;
    QCOMPARE(unpackBytes(archive, 0, unpacked), Status::Unsupported);
}

void TestUnpacker::refusesLinks()
{
    QTemporaryDir folder;
    QVERIFY(writeTree(folder.path(), {{QStringLiteral("main.exe"), "x"}}));
    QVERIFY(QFile::link(QStringLiteral("main.exe"), folder.filePath(QStringLiteral("link"))));
    const QByteArray archive = pack(folder.path(), {QStringLiteral("-snl")});
    QVERIFY(!archive.isEmpty());
    Tree unpacked;
    QCOMPARE(unpackBytes(archive, 0, unpacked), Status::Unsupported);
    QVERIFY(unpacked.isEmpty());
}

void TestUnpacker::needsTheProgram()
{
    const QByteArray archive
        = packTree({{QStringLiteral("Main.exe"), "x"}, {QStringLiteral("sub/other.exe"), "y"}}, {});
    Tree unpacked;
    QCOMPARE(unpackBytes(archive, 0, unpacked, QStringLiteral("main.EXE")), Status::Ok);
    for (const char *name : {"other.exe", "sub", "Main.ex"}) {
        QCOMPARE(unpackBytes(archive, 0, unpacked, QString::fromLatin1(name)),
                 Status::ProgramMissing);
        QVERIFY(unpacked.isEmpty());
    }
}

QTEST_APPLESS_MAIN(TestUnpacker)
#include "tst_unpacker.moc"
