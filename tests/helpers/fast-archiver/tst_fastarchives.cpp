// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/fast-archiver/archiverprocess.h"
#include "tests/helpers/fast-archiver/unpackedarchive.h"
#include "tests/support/onwindows.h"
#include "tests/support/testfiles.h"

#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

// Packs folders of all kinds. The archives must contain the entries that 7-Zip's archiver stores
// for the same folder, and their files' bytes.
class TestFastArchives : public QObject
{
    Q_OBJECT

private:
    QString folder() const { return m_temp->filePath("folder"); }
    QString archivePath() const { return m_temp->filePath("made.7z"); }

    void make(const QString &name, const QByteArray &content)
    {
        const QString path = folder() + '/' + name;
        if (!QDir().mkpath(QFileInfo(path).path()) || !writeFile(path, content)) {
            qFatal("a file could not be made");
        }
    }

    // The same bytes every time; they can be packed to a half.
    static QByteArray bytes(qsizetype size, quint32 seed)
    {
        QRandomGenerator random(seed);
        QByteArray made(size, '\0');
        for (qsizetype i = 0; i < size; i += 2) {
            made[i] = static_cast<char>(random.generate());
        }
        return made;
    }

    // Begins as a program for x64 does, and has calls that the filter changes.
    static QByteArray program(qsizetype size, quint32 seed)
    {
        QByteArray made = bytes(size, seed);
        made.replace(0, 2, "MZ");
        made.replace(60, 4, QByteArray("\x80\0\0\0", 4));
        made.replace(128, 6, QByteArray("PE\0\0\x64\x86", 6));
        for (qsizetype i = 4096; i + 5 < size; i += 97) {
            made.replace(i, 5, QByteArray("\xe8\x10\x20\x00\x00", 5));
        }
        return made;
    }

    QByteArray packed(const QString &method)
    {
        QFile::remove(archivePath());
        const ArchiverResult run = runArchiver(KESTRELPACK_FAST_ARCHIVER,
                                               archiverArguments(archivePath(), folder(), method));
        if (run.exitStatus != 0) {
            qWarning("%s", run.errors.constData());
            return {};
        }
        return readFile(archivePath());
    }

    QStringList linesOf7Zip()
    {
        const QString path = m_temp->filePath("other.7z");
        const ArchiverResult run
            = runArchiver(KESTRELPACK_TEST_ARCHIVER, archiverArguments(path, folder(), "LZMA"));
        const auto archive = readArchive(readFile(path), Unpacking::HeaderOnly);
        return run.exitStatus == 0 && archive ? sortedLines(*archive)
                                              : QStringList(QString::fromLocal8Bit(run.errors));
    }

    // Compares the archive with 7-Zip's, and with the disk.
    void checkArchive(const QByteArray &bytes)
    {
        const auto archive = readArchive(bytes, Unpacking::Everything);
        QVERIFY(archive);
        QCOMPARE(sortedLines(*archive), linesOf7Zip());
        for (const ArchivedEntry &entry : archive->entries) {
            const QString path = folder() + '/' + entry.path;
            if (!entry.isFolder && !QFileInfo(path).isSymLink()) {
                QVERIFY2(entry.content == readFile(path), qPrintable(entry.path));
            }
        }
    }

    std::unique_ptr<QTemporaryDir> m_temp;

private slots:
    void init()
    {
        m_temp = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir().mkpath(folder()));
    }

    void foldersOfAllKinds_data();
    void foldersOfAllKinds();
    void blocks_data();
    void blocks();
    void fiveThousandFiles();
    void timesAndAttributes();
    void linksAreStoredAsLinks();
    void theBytesDoNotDependOnThreads();
    void theBytesDoNotDependOnTheFoldersPath();
    void sevenZipListsIt();
    void percentagesRise();
};

void TestFastArchives::foldersOfAllKinds_data()
{
    QTest::addColumn<QStringList>("names"); // folders end with a slash
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("one byte") << QStringList("one") << QByteArray("x");
    QTest::newRow("an empty file") << QStringList({"a", "empty/e"}) << QByteArray();
    QTest::newRow("only empty folders") << QStringList({"a/", "b/c/"}) << QByteArray();
    QTest::newRow("an empty folder beside files")
        << QStringList({"a", "b/", "c/d"}) << QByteArray("x");
    QTest::newRow("names beyond ASCII") << QStringList(
        {QStringLiteral("文件夹/文件.txt"), QStringLiteral("ümläut"), "ﬁ", QStringLiteral("😀/😀.😀")})
                                        << QByteArray("content");
    if (!onWindows) { // Wine gives two answers to the question whether such a file is hidden
        QTest::newRow("hidden names") << QStringList({".hidden", ".folder/.x"}) << QByteArray("x");
    }
    QTest::newRow("blanks and signs")
        << QStringList({" a b", "c;d", "e%1", "f'g", "h#", "[i]", "$j", "@k", "-l"})
        << QByteArray("x");
    QTest::newRow("names that begin with each other")
        << QStringList({"a", "a.b", "a-b", "a b", "ab/c", "aB"}).mid(0, onWindows ? 5 : 6)
        << QByteArray("x");
    QTest::newRow("deep folders") << QStringList(QString("d/").repeated(60) + "file")
                                  << QByteArray("x");
}

void TestFastArchives::foldersOfAllKinds()
{
    QFETCH(QStringList, names);
    QFETCH(QByteArray, content);
    for (const QString &name : names) {
        if (name.endsWith('/')) {
            QVERIFY(QDir().mkpath(folder() + '/' + name));
        } else {
            make(name, content.isEmpty() ? content : content + name.toUtf8());
        }
    }
    checkArchive(packed("ZSTD:x=3"));
}

void TestFastArchives::blocks_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("as usual") << "ZSTD:x=3"
                              << QStringList({"BCJ Zstandard 3400000", "Zstandard 4700001"});
    QTest::newRow("small blocks") << "ZSTD:x=3:b=2"
                                  << QStringList({"Zstandard 3000000", "BCJ Zstandard 1700000",
                                                  "BCJ Zstandard 1700000", "Zstandard 1700001"});
    QTest::newRow("without the filter") << "ZSTD:x=3:f=0" << QStringList("Zstandard 8100001");
}

// Programs, data, and a file that is larger than a small block.
void TestFastArchives::blocks()
{
    QFETCH(QString, method);
    make("a.exe", program(1700000, 1));
    make("lib/b.dll", program(1700000, 2));
    make("c.txt", bytes(1700000, 3));
    make("d.txt", "x");
    make("large.bin", bytes(3000000, 4));
    const QByteArray made = packed(method);
    checkArchive(made);
    const auto archive = readArchive(made, Unpacking::HeaderOnly);
    QVERIFY(archive);
    QTEST(archive->blocks, "expected");
}

void TestFastArchives::fiveThousandFiles()
{
    for (int i = 0; i < 5000; ++i) {
        make(QStringLiteral("folder%1/file%2.%3").arg(i % 70).arg(i).arg(i % 9),
             bytes(i % 3000, quint32(i)));
    }
    checkArchive(packed("ZSTD:x=3"));
}

void TestFastArchives::timesAndAttributes()
{
    make("read-only", "x");
    make("old", "x");
    make("new", "x");
    QFile old(folder() + "/old");
    QVERIFY(old.open(QIODevice::ReadWrite));
    QVERIFY(old.setFileTime(QDateTime::fromMSecsSinceEpoch(123), QFile::FileModificationTime));
    old.close();
    QVERIFY(QFile::setPermissions(folder() + "/read-only", QFile::ReadOwner));
    checkArchive(packed("ZSTD:x=3"));
    QFile::setPermissions(folder() + "/read-only", QFile::ReadOwner | QFile::WriteOwner);
}

void TestFastArchives::linksAreStoredAsLinks()
{
    if (onWindows) {
        QSKIP("links need rights there, and are followed");
    }
    make("file", "content");
    QVERIFY(QDir().mkpath(folder() + "/sub"));
    for (const auto &[target, name] : {std::pair("file", "link"), std::pair("nowhere", "broken"),
                                       std::pair("sub", "to folder"), std::pair(".", "circle")}) {
        QVERIFY(QFile::link(target, folder() + '/' + name));
    }
    const QByteArray made = packed("ZSTD");
    checkArchive(made);
    const auto archive = readArchive(made, Unpacking::Everything);
    QVERIFY(archive);
    QCOMPARE(archive->entries.size(), 6);
}

void TestFastArchives::theBytesDoNotDependOnThreads()
{
    for (quint32 i = 0; i < 30; ++i) {
        make(QStringLiteral("file%1").arg(i), bytes(500000, i));
    }
    make("program.exe", program(2500000, 100));
    make("large", bytes(50 << 20, 200)); // packed in parts
    const QByteArray one = packed("ZSTD:x=1:b=1:mt=1");
    const auto archive = readArchive(one, Unpacking::Everything);
    QVERIFY(archive);
    QVERIFY(archive->blocks.size() > 15);
    QVERIFY(packed("ZSTD:x=1:b=1:mt=2") == one);
    QVERIFY(packed("ZSTD:x=1:b=1:mt=8") == one);
    QVERIFY(packed("ZSTD:x=1:b=1") == one);
}

void TestFastArchives::theBytesDoNotDependOnTheFoldersPath()
{
    make("b/c", "1");
    make("a", "2");
    const QByteArray first = packed("ZSTD");
    QVERIFY(!first.isEmpty());
    const QString elsewhere = m_temp->filePath(QStringLiteral("另外/folder"));
    QVERIFY(QDir().mkpath(QFileInfo(elsewhere).path()));
    QVERIFY(QDir().rename(folder(), elsewhere));
    const ArchiverResult run = runArchiver(KESTRELPACK_FAST_ARCHIVER,
                                           archiverArguments(archivePath(), elsewhere, "ZSTD"));
    QCOMPARE(run.exitStatus, 0);
    QCOMPARE(readFile(archivePath()), first);
}

// 7-Zip's own archiver cannot unpack the method, but it lists the archive.
void TestFastArchives::sevenZipListsIt()
{
    make("a.exe", program(20000, 1));
    make("folder/b", "x");
    make("empty", {});
    QVERIFY(!packed("ZSTD").isEmpty());
    const ArchiverResult run = runArchiver(KESTRELPACK_TEST_ARCHIVER, {"l", "-slt", archivePath()});
    QCOMPARE(run.exitStatus, 0);
    QCOMPARE(run.errors, QByteArray());
    for (const char *line : {"Path = a.exe", "Path = empty", "Path = folder", "Size = 20000",
                             "Method = BCJ 04F71101", "Blocks = 2"}) {
        QVERIFY2(run.output.contains(line), run.output);
    }
}

// In the form of 7-Zip's archiver: a percentage, and then characters that remove it.
void TestFastArchives::percentagesRise()
{
    for (quint32 i = 0; i < 20; ++i) {
        make(QStringLiteral("file%1").arg(i), bytes(1000000, i));
    }
    const ArchiverResult run
        = runArchiver(KESTRELPACK_FAST_ARCHIVER,
                      archiverArguments(archivePath(), folder(), "ZSTD:x=3:b=1"));
    QCOMPARE(run.exitStatus, 0);
    QCOMPARE(run.errors, QByteArray());
    static const QRegularExpression percentage("(\\d+)%");
    auto matches = percentage.globalMatch(QString::fromUtf8(run.output));
    QVERIFY(matches.hasNext());
    int last = 0;
    while (matches.hasNext()) {
        const int number = matches.next().captured(1).toInt();
        QVERIFY2(number >= last && number <= 100, run.output);
        last = number;
    }
    QVERIFY2(run.output.trimmed().endsWith("Everything is Ok"), run.output);
}

QTEST_GUILESS_MAIN(TestFastArchives)
#include "tst_fastarchives.moc"
