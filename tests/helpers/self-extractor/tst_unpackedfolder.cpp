// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/archivewriter.h"
#include "tests/helpers/self-extractor/moduletest.h"
#include "tests/helpers/self-extractor/zstdarchive.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QTest>

// Compares the files around the running program with the packed ones.
class TestUnpackedFolder : public ModuleTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void isWhatWasPacked_data();
    void isWhatWasPacked();
    void isWhatZstandardPacked_data();
    void isWhatZstandardPacked();
    void zstandardIsRefusedByTheSmallModule();
    void takesFilesOfACloudDrive();

private:
    void compareUnpacked(const QByteArray &archive, bool hasTimes);

    QString m_source;
    Tree m_tree;
};

namespace {

constexpr qsizetype mebibyte = 1024 * 1024;

// One line for each file and folder: name, size, time of change, and whether it is writable.
QStringList listing(const QString &folder)
{
    QStringList lines;
    QDirIterator entries(folder, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QFileInfo info(entries.next());
        lines += QStringLiteral("%1 %2 %3 %4")
                     .arg(info.filePath().mid(folder.size()),
                          info.isDir() ? QStringLiteral("folder") : QString::number(info.size()),
                          info.lastModified().toString(Qt::ISODateWithMs),
                          info.permission(QFileDevice::WriteOwner) ? QStringLiteral("rw")
                                                                   : QStringLiteral("r"));
    }
    lines.sort();
    return lines;
}

QStringList differingFiles(const QString &one, const QString &other)
{
    QStringList names;
    QDirIterator entries(one, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString name = entries.next().mid(one.size());
        if (contentOf(one + name) != contentOf(other + name)) {
            names += name;
        }
    }
    return names;
}

} // namespace

void TestUnpackedFolder::initTestCase()
{
    QVERIFY(m_run.setUp());
    m_source = m_run.path(QStringLiteral("source"));
    Tree tree = mixedTree();
    tree[QStringLiteral("main.exe")] = ModuleRun::programBytes();
    tree[QStringLiteral("long.bin")] = noise(64 * 1024, 1).repeated(180); // in several blocks
    tree[QStringLiteral("text/readonly.txt")] = "mine";
    tree[QStringLiteral("text/READON~1.TXT")] = "a name like a short one";
    for (int i = 0; i < 30; ++i) {
        tree[QStringLiteral("many/%1.bin").arg(i)]
            = noise(1024, static_cast<quint32>(i)).repeated(150 + i);
    }
    for (int i = 0; i < 60; ++i) { // each file in another folder than the one before
        tree[QStringLiteral("turns/%1.txt").arg(i)] = QByteArray::number(i);
        tree[QStringLiteral("turns/%1/inner.txt").arg(i)] = QByteArray::number(-i);
    }
    QVERIFY(QDir().mkpath(m_source));
    QVERIFY(writeTree(m_source, tree));
    m_tree = tree;
    const QDateTime past(QDate(2020, 2, 29), QTime(12, 34, 56), Qt::UTC);
    QFile file(m_source + QStringLiteral("/long.bin"));
    QVERIFY(file.open(QIODevice::ReadWrite)
            && file.setFileTime(past, QFileDevice::FileModificationTime));
    file.close();
    for (const char *name : {"/long.bin", "/text/readonly.txt", "/text/READON~1.TXT"}) {
        QVERIFY(QFile::setPermissions(m_source + QLatin1String(name), QFileDevice::ReadOwner));
    }
}

void TestUnpackedFolder::isWhatWasPacked_data()
{
    QTest::addColumn<QStringList>("switches");
    QTest::addColumn<bool>("closingIsSlow");
    const QStringList everyFile{"-mx=1", "-ms=off"};
    QTest::newRow("as the window packs it") << QStringList{"-mx=5", "-m0=LZMA", "-ssc"} << false;
    QTest::newRow("LZMA2 in blocks")
        << QStringList{"-mx=1", "-mf=off", "-m0=LZMA2:d=1m:c=4m", "-mmt=2"} << false;
    QTest::newRow("every file by itself") << everyFile << false;
    QTest::newRow("every file by itself, closed by threads") << everyFile << true;
    QTest::newRow("only stored") << QStringList{"-mx=0"} << false;
    QTest::newRow("only stored, closed by threads") << QStringList{"-mx=0"} << true;
}

void TestUnpackedFolder::isWhatWasPacked()
{
    QFETCH(QStringList, switches);
    QFETCH(bool, closingIsSlow);
    m_run.pretendSlowClosing(closingIsSlow);
    compareUnpacked(pack(m_source, switches), true);
    m_run.pretendSlowClosing(false);
}

void TestUnpackedFolder::isWhatZstandardPacked_data()
{
    QTest::addColumn<QByteArray>("archive");
    QTest::newRow("in one block") << packZstd(m_tree, {.frames = {.level = 15}});
    QTest::newRow("in several blocks") << packZstd(m_tree, {.blockSize = mebibyte});
    QTest::newRow("with the filter for x86") << packZstd(m_tree, {.isFiltered = true});
    QTest::newRow("in frames with a small window")
        << packZstd(m_tree,
                    {.frameSize = 3 * mebibyte,
                     .hasSkippable = true,
                     .frames = {.windowLog = 18, .hasContentSize = false}});
}

void TestUnpackedFolder::isWhatZstandardPacked()
{
    QFETCH(QByteArray, archive);
    m_run.useFullModule(true);
    compareUnpacked(archive, false);
    m_run.useFullModule(false);
}

// Before anything is written.
void TestUnpackedFolder::zstandardIsRefusedByTheSmallModule()
{
    const QString file = m_run.assemble(packZstd(m_tree, {}), QStringLiteral("main.exe"));
    QVERIFY(!file.isEmpty());
    const QString missing = QStringLiteral("--temp=") + windowsPath(m_run.path("missing"));
    const Run result = m_run.run(file, QString(), {missing});
    QCOMPARE(result.value("ended").toUInt(), static_cast<quint32>(sfx::ExitCode::Unsupported));
    QCOMPARE(result.value("program"), QString());
    QVERIFY2(result.errors.startsWith("main Portable: "), result.errors.constData());
}

void TestUnpackedFolder::compareUnpacked(const QByteArray &archive, bool hasTimes)
{
    const QString file = m_run.assemble(archive, QStringLiteral("main.exe"));
    QVERIFY(!file.isEmpty());
    const auto process = m_run.start(file, QStringLiteral(" --wait"));
    ModuleRun::waitForOutput(*process, "folder=");
    const QDir temporary(m_run.temporaryFolder());
    const QStringList folders = temporary.entryList({QStringLiteral("kp-*")}, QDir::Dirs);
    QCOMPARE(folders.size(), 1);
    const QString unpacked = temporary.filePath(folders.first() + QStringLiteral("/main"));
    if (hasTimes) {
        QCOMPARE(listing(unpacked), listing(m_source));
    }
    QCOMPARE(differingFiles(unpacked, m_source), QStringList());
    QCOMPARE(differingFiles(m_source, unpacked), QStringList());
    QCOMPARE(ModuleRun::finish(*process).exitCode, 7);
    QCOMPARE(m_run.leftovers(), QStringList());
}

// On such drives ordinary files are reparse points.
void TestUnpackedFolder::takesFilesOfACloudDrive()
{
    const forge::ArchivePlan plan(
        {{QStringLiteral("main.exe"), ModuleRun::programBytes(), false, false, 0x80420u},
         {QStringLiteral("folder"), QByteArray(), true, false, 0x80410u},
         {QStringLiteral("data.txt"), "still here", false, false, 0x501620u}});
    const Run result = m_run.run(m_run.assemble(forge::archiveOf(plan), QStringLiteral("main.exe")),
                                 QStringLiteral(" --launch=0"));
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, 7);
    QCOMPARE(result.value("data"), QStringLiteral("still here"));
    QCOMPARE(m_run.leftovers(), QStringList());
}

QTEST_GUILESS_MAIN(TestUnpackedFolder)
#include "tst_unpackedfolder.moc"
