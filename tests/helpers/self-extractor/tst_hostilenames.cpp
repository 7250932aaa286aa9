// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/hostilerun.h"
#include "tests/helpers/self-extractor/sfxtest.h"

#include <QSet>
#include <QTest>

using namespace sfx;

Q_DECLARE_METATYPE(QList<forge::File>)

// Names and kinds of entries that no normal packer writes.
class TestHostileNames : public QObject
{
    Q_OBJECT

private slots:
    void refusesNames_data();
    void refusesNames();
    void refusesPairsOfNames_data();
    void refusesPairsOfNames();
    void takesOddNames_data();
    void takesOddNames();
    void refusesWhatIsNoFile_data();
    void refusesWhatIsNoFile();
    void takesAttributesOfOtherDisks_data();
    void takesAttributesOfOtherDisks();
    void takesAntiItemsForEmptyFiles();

private:
    static void refuse(const QList<forge::File> &files, Status status);
};

void TestHostileNames::refuse(const QList<forge::File> &files, Status status)
{
    const HostileRun run = runHostile(forge::archiveOf(planWith(files)));
    QCOMPARE(run.status, status);
    QVERIFY(!run.hasBegun);
    QVERIFY2(run.peakMemory < 1u << 20, qPrintable(QString::number(run.peakMemory)));
}

void TestHostileNames::refusesNames_data()
{
    QTest::addColumn<QString>("name");
    const auto row = [](const char *what, const QString &name) {
        QTest::newRow(what) << name;
    };
    row("the folder above", "..");
    row("a file above", "../evil.dll");
    row("a file above, Windows' way", "..\\evil.dll");
    row("up again after going down", "a/../../evil.dll");
    row("the folder itself", ".");
    row("the folder itself within", "a/./b");
    row("an absolute path", "/evil.dll");
    row("an absolute path, Windows' way", "\\evil.dll");
    row("a drive", "C:/evil.dll");
    row("a drive's current folder", "c:evil.dll");
    row("a server", "\\\\server\\share\\evil.dll");
    row("a server with slashes", "//server/share/evil.dll");
    row("a path without limits", "\\\\?\\C:\\evil.dll");
    row("the device folder", "//./NUL");
    row("a stream", "a.txt:evil");
    row("a stream of the program", "main.exe:evil");
    row("the data stream", "a.txt::$DATA");
    row("a device", "CON");
    row("a device with an extension", "nul.txt");
    row("a device with two extensions", "aux.tar.gz");
    row("a port", "COM1.log");
    row("a port with a superscript digit", QStringLiteral("lpt\u00b9"));
    row("a device as a folder", "con/a.dll");
    row("a device before a blank", "nul .txt");
    row("a dot at the end", "evil.dll.");
    row("a blank at the end", "evil.dll ");
    row("a dot at a folder's end", "a./b");
    row("a tabulator", "a\tb");
    row("the first control character", QString(QChar(1)));
    row("a line feed", "a\nb");
    row("a wildcard", "*.dll");
    row("nothing", "");
    row("an empty folder name", "a//b");
    row("a slash at the end", "a/");
    row("256 characters", QString(256, u'x'));
    row("33,000 characters", QStringLiteral("abcdefghij/").repeated(3000));
    row("33,000 characters without a slash", QString(33000, u'x'));
}

void TestHostileNames::refusesNames()
{
    QFETCH(QString, name);
    refuse({{name, "evil"}}, Status::UnsafeName);
    if (QTest::currentTestFailed()) {
        return;
    }
    refuse({{name, QByteArray(), true}}, Status::UnsafeName);
}

void TestHostileNames::refusesPairsOfNames_data()
{
    QTest::addColumn<QList<forge::File>>("files");
    using Files = QList<forge::File>;
    QTest::newRow("the same name twice") << Files{{"a.dll", "1"}, {"a.dll", "2"}};
    QTest::newRow("the program twice") << Files{{"main.exe", "evil"}};
    QTest::newRow("the program in capitals") << Files{{"MAIN.EXE", "evil"}};
    QTest::newRow("small and capital letters") << Files{{"lib/a.dll", "1"}, {"LIB/A.dll", "2"}};
    QTest::newRow("letters of other scripts")
        << Files{{QStringLiteral("\u0436"), "1"}, {QStringLiteral("\u0416"), "2"}};
    QTest::newRow("a dot more") << Files{{"a.dll", "1"}, {"a.dll.", "2"}};
    QTest::newRow("file and folder") << Files{{"a", "1"}, {"a", QByteArray(), true}};
    QTest::newRow("a file with a file in it") << Files{{"a/b", "1"}, {"a", "2"}};
    QTest::newRow("the program with a file in it") << Files{{"Main.exe/b", "1"}};
    QTest::newRow("the same folder twice")
        << Files{{"a", QByteArray(), true}, {"A", QByteArray(), true}};
}

void TestHostileNames::refusesPairsOfNames()
{
    QFETCH(QList<forge::File>, files);
    refuse(files, Status::UnsafeName);
}

void TestHostileNames::takesOddNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("half a surrogate pair, which Windows can hold") << QString(QChar(0xd800)) + "x";
    QTest::newRow("the other half first") << QString(QChar(0xdc00)) + QChar(0xd800);
    QTest::newRow("full-width dots, which are letters") << QStringLiteral("\uff0e\uff0e/a");
    QTest::newRow("a direction mark") << QStringLiteral("a\u202etxt.exe");
    QTest::newRow("255 characters") << QString(255, u'x');
}

void TestHostileNames::takesOddNames()
{
    QFETCH(QString, name);
    const HostileRun run = runHostile(forge::archiveOf(planWith({{name, "content"}})));
    QCOMPARE(run.status, Status::Ok);
    QCOMPARE(QSet<QString>(run.files.begin(), run.files.end()), (QSet<QString>{"main.exe", name}));
}

void TestHostileNames::refusesWhatIsNoFile_data()
{
    QTest::addColumn<quint32>("attributes");
    const auto unixMode = [](quint32 mode) {
        return (mode << 16) | 0x8000u;
    };
    QTest::newRow("a symbolic link") << unixMode(0120777);
    QTest::newRow("a named pipe") << unixMode(0010644);
    QTest::newRow("a device for blocks") << unixMode(0060644);
    QTest::newRow("a device for characters") << unixMode(0020644);
    QTest::newRow("a socket") << unixMode(0140644);
    QTest::newRow("a symbolic link that is also a reparse point") << (unixMode(0120777) | 0x400u);
}

void TestHostileNames::refusesWhatIsNoFile()
{
    QFETCH(quint32, attributes);
    refuse({{"link", "main.exe", false, false, attributes}}, Status::Unsupported);
    if (QTest::currentTestFailed()) {
        return;
    }
    refuse({{"link", QByteArray(), true, false, attributes}}, Status::Unsupported);
}

void TestHostileNames::takesAttributesOfOtherDisks_data()
{
    QTest::addColumn<quint32>("attributes");
    QTest::addColumn<quint32>("kept");
    QTest::newRow("all that means the same everywhere") << 0x27u << 0x27u;
    QTest::newRow("an ordinary file") << 0x80u << 0u;
    QTest::newRow("a reparse point") << 0x400u << 0u;
    QTest::newRow("a junction") << 0x410u << 0u;
    QTest::newRow("always kept on a cloud drive's device") << 0x80420u << 0x20u;
    QTest::newRow("fetched by a cloud drive when it is read") << 0x501620u << 0x20u;
    QTest::newRow("fetched by a cloud drive when it is opened") << 0x41420u << 0x20u;
    QTest::newRow("on a disk with deduplication") << 0x621u << 0x21u;
    QTest::newRow("compressed and sparse") << 0xa20u << 0x20u;
    QTest::newRow("encrypted") << 0x4022u << 0x22u;
    QTest::newRow("temporary, offline and not indexed") << 0x3124u << 0x24u;
    QTest::newRow("with the integrity stream of ReFS") << 0x8020u << 0x20u;
    QTest::newRow("a reparse point with a file's mode") << ((0100644u << 16) | 0x8400u) << 0u;
}

void TestHostileNames::takesAttributesOfOtherDisks()
{
    QFETCH(quint32, attributes);
    for (const bool isFolder : {false, true}) {
        const QByteArray content(isFolder ? "" : "x");
        const QByteArray archive
            = forge::archiveOf(planWith({{"given", content, isFolder, false, attributes}}));
        QCOMPARE(runHostile(archive).status, Status::Ok);
        MemorySource source(archive);
        Archive opened(source);
        Entry entry;
        QCOMPARE(opened.open(0), Status::Ok);
        QCOMPARE(opened.entry(1, entry), Status::Ok);
        QTEST(entry.attributes, "kept");
    }
}

void TestHostileNames::takesAntiItemsForEmptyFiles()
{
    const HostileRun run
        = runHostile(forge::archiveOf(planWith({{"gone.dll", QByteArray(), false, true}})));
    QCOMPARE(run.status, Status::Ok);
    QCOMPARE(run.files, QList<QString>({"gone.dll", "main.exe"}));
    QCOMPARE(run.written, std::uint64_t(programFile().content.size()));
}

QTEST_APPLESS_MAIN(TestHostileNames)
#include "tst_hostilenames.moc"
