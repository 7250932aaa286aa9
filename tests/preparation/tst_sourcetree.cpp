// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/sourcetree.h"

#include "helpers/self-extractor/archive/pathset.h"
#include "platform/filenamecase.h"
#include "preparation/reparsekind.h"

#include <QTest>

using Kind = SourceEntry::Kind;
using Target = SourceEntry::Target;

namespace {

SourceEntry entry(const QString &path, Kind kind = Kind::File)
{
    SourceEntry entry;
    entry.path = path;
    entry.kind = kind;
    entry.size = kind == Kind::File ? 10 : 0;
    entry.modified = 1000;
    entry.mode = kind == Kind::Folder ? 0755 : 0644;
    return entry;
}

SourceEntry link(const QString &path, Target kind, const QString &target)
{
    SourceEntry link = entry(path, Kind::Link);
    link.targetKind = kind;
    link.target = target;
    return link;
}

SourceEntry unreadable(const QString &path)
{
    SourceEntry unreadable = entry(path, Kind::Unreadable);
    unreadable.problem = "Permission denied";
    return unreadable;
}

SourceEntry damaged(const QString &path)
{
    SourceEntry damaged = entry(path);
    damaged.nameIsDamaged = true;
    return damaged;
}

QStringList textsOf(const QList<Message> &messages)
{
    QStringList texts;
    for (const Message &message : messages) {
        texts << textOf(message);
    }
    return texts;
}

// A path and, after an arrow, what the archive has there. Folders have a slash.
QStringList textOf(const SourcePlan &plan)
{
    QStringList lines;
    for (const PlannedFolder &folder : plan.folders) {
        lines << folder.path + '/';
    }
    for (const PlannedFile &file : plan.files) {
        lines << (file.path == file.source ? file.path : file.path + " <- " + file.source);
    }
    lines.sort();
    return lines;
}

using Entries = QList<SourceEntry>;

} // namespace

Q_DECLARE_METATYPE(SourceEntry)

class TestSourceTree : public QObject
{
    Q_OBJECT

private slots:
    void takes_data();
    void takes();
    void refuses_data();
    void refuses();
    void collisionsAreThoseOfTheSelfExtractor_data();
    void collisionsAreThoseOfTheSelfExtractor();
    void patternsThatMatchNothingAreReported();
    void manyProblemsAreShortened();
    void aFolderWithoutFilesIsRefused();
    void theMainProgramIsNamedAsOnTheDisk();
    void linksWithoutMeasureAreRefused();
    void stagingIsNeededOnlyForChanges_data();
    void stagingIsNeededOnlyForChanges();
    void permissions_data();
    void permissions();
    void windowsAttributes();
    void onlyChangedFilesAreCopied();
    void aHundredThousandFiles();
    void kindsOfWindowsEntries_data();
    void kindsOfWindowsEntries();
};

void TestSourceTree::takes_data()
{
    QTest::addColumn<Entries>("entries");
    QTest::addColumn<QStringList>("excludes");
    QTest::addColumn<QStringList>("content");
    const Entries plain{entry("app.exe"), entry("data", Kind::Folder), entry("data/a.txt"),
                        entry("empty", Kind::Folder)};
    QTest::newRow("everything") << plain << QStringList{}
                                << QStringList{"app.exe", "data/", "data/a.txt", "empty/"};
    QTest::newRow("without a folder")
        << plain << QStringList{"DATA/"} << QStringList{"app.exe", "empty/"};
    QTest::newRow("without a file")
        << plain << QStringList{"*.txt"} << QStringList{"app.exe", "data/", "empty/"};
    QTest::newRow("a link to a file")
        << plain + Entries{link("b.txt", Target::Inside, "data/a.txt")} << QStringList{}
        << QStringList{"app.exe", "b.txt <- data/a.txt", "data/", "data/a.txt", "empty/"};
    QTest::newRow("a link to a folder")
        << plain + Entries{link("current", Target::Inside, "data")} << QStringList{}
        << QStringList{"app.exe", "current/",   "current/a.txt <- data/a.txt",
                       "data/",   "data/a.txt", "empty/"};
    QTest::newRow("a link to a folder that is left out")
        << plain + Entries{link("current", Target::Inside, "data")} << QStringList{"/data/"}
        << QStringList{"app.exe", "current/", "current/a.txt <- data/a.txt", "empty/"};
    QTest::newRow("a pattern in a linked folder")
        << plain + Entries{link("current", Target::Inside, "data")} << QStringList{"current/*.txt"}
        << QStringList{"app.exe", "current/", "data/", "data/a.txt", "empty/"};
    QTest::newRow("what cannot be packed is left out")
        << plain + Entries{entry("pipe", Kind::Pipe), unreadable("secret"),
                           damaged("caf?"),           link("out", Target::Outside, "/etc"),
                           entry("con.txt"),          entry("APP.EXE")}
        << QStringList{"pipe", "secret", "caf?", "out", "con.*", "/APP.EXE"}
        << QStringList{"data/", "data/a.txt", "empty/"};
}

void TestSourceTree::takes()
{
    QFETCH(const Entries, entries);
    QFETCH(const QStringList, excludes);
    TreeOptions options;
    options.excludes = excludes;
    const auto result = planTree("/folder", entries, options);
    if (const auto *problems = std::get_if<TreeProblems>(&result)) {
        QFAIL(qUtf8Printable(textsOf(problems->messages).join('\n')));
    }
    QTEST(textOf(std::get<SourcePlan>(result)), "content");
}

void TestSourceTree::refuses_data()
{
    QTest::addColumn<Entries>("entries");
    QTest::addColumn<QStringList>("excludes");
    QTest::addColumn<QStringList>("sentences");
    const auto row = [](const char *name, const Entries &entries, const QStringList &excludes,
                        const QStringList &sentences) {
        QTest::newRow(name) << Entries{entry("app.exe")} + entries << excludes << sentences;
    };
    row("a link out of the folder", {link("l", Target::Outside, "/etc/passwd")}, {},
        {"the link l leads out of the folder, to /etc/passwd"});
    row("a link to nowhere", {link("l", Target::Missing, "gone")}, {},
        {"the link l leads to gone, which does not exist"});
    row("a link to itself", {link("l", Target::Circle, "l")}, {},
        {"the link l leads back to itself"});
    row("a link to the folder to pack", {link("l", Target::Inside, "")}, {},
        {"the link l leads to a folder that contains it, so it has no end"});
    row("a link to a parent",
        {entry("a", Kind::Folder), entry("a/b", Kind::Folder), link("a/b/l", Target::Inside, "a")},
        {}, {"the link a/b/l leads to a folder that contains it, so it has no end"});
    row("two links in a circle",
        {entry("a", Kind::Folder), entry("b", Kind::Folder), link("a/l", Target::Inside, "b"),
         link("b/l", Target::Inside, "a")},
        {},
        {"the link a/l/l leads to a folder that contains it, so it has no end",
         "the link b/l/l leads to a folder that contains it, so it has no end"});
    row("a device", {entry("d", Kind::Device)}, {}, {"d is a device, not a file"});
    row("a pipe", {entry("p", Kind::Pipe)}, {}, {"p is a pipe, not a file"});
    row("a socket", {entry("s", Kind::Socket)}, {}, {"s is a socket, not a file"});
    row("a link to a pipe", {entry("p", Kind::Pipe), link("l", Target::Inside, "p")}, {"p"},
        {"l is a pipe, not a file"});
    row("a file that cannot be read", {unreadable("u")}, {},
        {"u cannot be read: Permission denied"});
    row("a name that is no UTF-8", {damaged("caf?")}, {},
        {"caf? cannot be packed: its name is not valid UTF-8"});
    row("a device's name", {entry("src", Kind::Folder), entry("src/aux.c")}, {},
        {"src/aux.c cannot be packed: on Windows that is the name of a device"});
    row("a folder's name is reported once", {entry("a.", Kind::Folder), entry("a./b")}, {},
        {"a. cannot be packed: on Windows a name must not end with a space or a dot"});
    row("a name with a line break", {entry("a\nb")}, {},
        {"a\\x0ab cannot be packed: on Windows a name must not have control characters or any of "
         "\" * / : < > ? \\ |"});
    row("names that differ by case", {entry("Read.me"), entry("read.ME")}, {},
        {"Read.me and read.ME cannot both be packed: on Windows they are the same name"});
    row("a file and a folder", {entry("Lib"), entry("lib", Kind::Folder), entry("lib/a")}, {},
        {"Lib and lib cannot both be packed: on Windows they are the same name"});
    row("a broken pattern", {}, {"[a", "*.pdb"}, {"the pattern [a is broken: a [ has no ]"});
    row("a pattern that leaves nothing", {}, {"**"},
        {"the pattern ** excludes the main program app.exe"});
    row("a pattern for the main program", {entry("b")}, {"*.pdb", "APP.*"},
        {"the pattern APP.* excludes the main program app.exe"});
}

void TestSourceTree::refuses()
{
    QFETCH(const Entries, entries);
    QFETCH(const QStringList, excludes);
    TreeOptions options;
    options.excludes = excludes;
    options.mainProgram = "app.exe";
    const auto result = planTree("/folder", entries, options);
    QVERIFY(std::holds_alternative<TreeProblems>(result));
    QTEST(textsOf(std::get<TreeProblems>(result).messages), "sentences");
}

void TestSourceTree::collisionsAreThoseOfTheSelfExtractor_data()
{
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("other");
    QTest::newRow("different") << "a"
                               << "b";
    QTest::newRow("case") << "a"
                          << "A";
    QTest::newRow("case in a folder") << "x/a"
                                      << "X/A";
    QTest::newRow("umlauts") << QString::fromUtf8("ä") << QString::fromUtf8("Ä");
    QTest::newRow("an accent of its own") << QString::fromUtf8("é") << QString::fromUtf8("e\u0301");
    QTest::newRow("sharp s") << QString::fromUtf8("ß") << "SS";
    QTest::newRow("Greek sigma") << QString::fromUtf8("σ") << QString::fromUtf8("ς");
    QTest::newRow("Cyrillic") << QString::fromUtf8("ж") << QString::fromUtf8("Ж");
    QTest::newRow("letters of two units") << QString::fromUtf8("𐐨") << QString::fromUtf8("𐐀");
    QTest::newRow("a longer name") << "a"
                                   << "a.b";
}

void TestSourceTree::collisionsAreThoseOfTheSelfExtractor()
{
    QFETCH(const QString, one);
    QFETCH(const QString, other);
    sfx::PathSet set(toFileNameUpperCase);
    QVERIFY(set.allocate(2, static_cast<std::size_t>(one.size() + other.size())));
    Entries entries;
    for (const QString &path : {one, other}) {
        set.add(reinterpret_cast<const char16_t *>(path.utf16()),
                static_cast<std::size_t>(path.size()), false);
        if (path.contains('/')) {
            entries << entry(path.section('/', 0, 0), Kind::Folder);
        }
        entries << entry(path);
    }
    const auto result = planTree("/folder", entries, {});
    QCOMPARE(std::holds_alternative<TreeProblems>(result), set.collides());
}

void TestSourceTree::patternsThatMatchNothingAreReported()
{
    TreeOptions options;
    options.excludes = QStringList{"*.pdb", ".git/", "*.pack", "docs"};
    const auto result
        = planTree("/folder",
                   {entry("app.exe"), entry(".git", Kind::Folder),
                    entry(".git/objects", Kind::Folder), entry(".git/objects/a.pack")},
                   options);
    QVERIFY(std::holds_alternative<SourcePlan>(result));
    QCOMPARE(textsOf(std::get<SourcePlan>(result).warnings),
             QStringList({"the pattern *.pdb matches nothing in the folder",
                          "the pattern docs matches nothing in the folder"}));
}

void TestSourceTree::manyProblemsAreShortened()
{
    Entries entries;
    for (int i = 0; i < 25; ++i) {
        entries << entry(QStringLiteral("pipe%1").arg(i), Kind::Pipe);
    }
    const auto result = planTree("/folder", entries, {});
    const QStringList sentences = textsOf(std::get<TreeProblems>(result).messages);
    QCOMPARE(sentences.size(), 21);
    QCOMPARE(sentences.constLast(), "and 5 more");
}

void TestSourceTree::aFolderWithoutFilesIsRefused()
{
    const auto sentences = [](const Entries &entries, const QStringList &excludes) {
        TreeOptions options;
        options.excludes = excludes;
        const auto result = planTree("/folder", entries, options);
        const auto *problems = std::get_if<TreeProblems>(&result);
        return problems != nullptr ? textsOf(problems->messages) : QStringList();
    };
    const QStringList empty{"the folder /folder contains no files"};
    QCOMPARE(sentences({}, {}), empty);
    QCOMPARE(sentences({entry("a", Kind::Folder)}, {}), empty);
    QCOMPARE(sentences({entry("a")}, {"*"}), QStringList("the patterns leave no files to pack"));
}

void TestSourceTree::theMainProgramIsNamedAsOnTheDisk()
{
    TreeOptions options;
    options.mainProgram = "BIN/App.EXE";
    const Entries entries{entry("bin", Kind::Folder), entry("bin/app.exe")};
    const auto plan = std::get<SourcePlan>(planTree("/folder", entries, options));
    QCOMPARE(plan.mainProgram, "bin/app.exe");
    options.mainProgram = "app.exe";
    const auto result = planTree("/folder", entries, options);
    QCOMPARE(textsOf(std::get<TreeProblems>(result).messages),
             QStringList("the folder /folder contains no file app.exe"));
}

// 40 folders with two links each to the next one stand for 2^40 files.
void TestSourceTree::linksWithoutMeasureAreRefused()
{
    Entries entries;
    for (int i = 0; i < 40; ++i) {
        const QString name = QString::number(i);
        const QString next = QString::number(i + 1);
        entries << entry(name, Kind::Folder);
        for (const char letter : {'a', 'b'}) {
            entries << link(name + '/' + QString(200, letter), Target::Inside, next);
        }
    }
    entries << entry("40", Kind::Folder) << entry("40/file");
    const auto result = planTree("/folder", entries, {});
    QVERIFY(std::holds_alternative<TreeProblems>(result));
    QCOMPARE(textsOf(std::get<TreeProblems>(result).messages),
             QStringList("there are too many files: the list of their names is larger than the "
                         "64 MiB that a produced file may have"));
}

void TestSourceTree::stagingIsNeededOnlyForChanges_data()
{
    QTest::addColumn<SourceEntry>("more");
    QTest::addColumn<QStringList>("excludes");
    QTest::addColumn<qint64>("limit");
    QTest::addColumn<bool>("isNeeded");
    SourceEntry openToAll = entry("b");
    openToAll.mode = 0666;
    SourceEntry readOnly = entry("b");
    readOnly.mustNotBeLinked = true;
    QTest::newRow("nothing to change") << entry("b") << QStringList{} << qint64(1000) << false;
    QTest::newRow("a pattern without a match")
        << entry("b") << QStringList{"*.pdb"} << qint64(1000) << false;
    QTest::newRow("a pattern") << entry("b") << QStringList{"b"} << qint64(1000) << true;
    QTest::newRow("a link") << link("b", Target::Inside, "app.exe") << QStringList{} << qint64(1000)
                            << true;
    QTest::newRow("a later time") << entry("b") << QStringList{} << qint64(999) << true;
    QTest::newRow("other permissions") << openToAll << QStringList{} << qint64(1000) << true;
    QTest::newRow("a file that must not be linked")
        << readOnly << QStringList{} << qint64(1000) << false;
}

void TestSourceTree::stagingIsNeededOnlyForChanges()
{
    QFETCH(const SourceEntry, more);
    QFETCH(const qint64, limit);
    QFETCH(const QStringList, excludes);
    TreeOptions options;
    options.excludes = excludes;
    options.times.limit = limit;
    const auto result = planTree("/folder", {entry("app.exe"), more}, options);
    QVERIFY(std::holds_alternative<SourcePlan>(result));
    QTEST(std::get<SourcePlan>(result).needsStaging, "isNeeded");
}

void TestSourceTree::permissions_data()
{
    QTest::addColumn<quint32>("mode");
    QTest::addColumn<quint32>("normal");
    QTest::addColumn<quint32>("uniform");
    QTest::newRow("usual") << 0644u << 0644u << 0644u;
    QTest::newRow("a group that may write") << 0664u << 0644u << 0644u;
    QTest::newRow("private") << 0600u << 0644u << 0644u;
    QTest::newRow("a program") << 0775u << 0755u << 0644u;
    QTest::newRow("everything allowed") << 0777u << 0755u << 0644u;
    QTest::newRow("set-user-ID") << 04755u << 0755u << 0644u;
    QTest::newRow("read-only") << 0400u << 0444u << 0444u;
    QTest::newRow("a read-only program") << 0555u << 0555u << 0444u;
}

void TestSourceTree::permissions()
{
    QFETCH(const quint32, mode);
    QFETCH(const quint32, normal);
    QFETCH(const quint32, uniform);
    SourceEntry file = entry("app.exe");
    file.mode = mode;
    SourceEntry folder = entry("folder", Kind::Folder);
    folder.mode = 0700;
    const auto modes = [&](TreeOptions::Permissions permissions) {
        TreeOptions options;
        options.permissions = permissions;
        const auto plan = std::get<SourcePlan>(planTree("/folder", {file, folder}, options));
        return QList<quint32>{*plan.files.constFirst().mode, *plan.folders.constFirst().mode};
    };
    QCOMPARE(modes(TreeOptions::Permissions::AsTheyAre), QList<quint32>({mode, 0700}));
    QCOMPARE(modes(TreeOptions::Permissions::Normal), QList<quint32>({normal, 0755}));
    QCOMPARE(modes(TreeOptions::Permissions::Uniform), QList<quint32>({uniform, 0755}));
}

// Read-only 1, hidden 2, system 4, directory 10, archive 20, not indexed 2000 (hexadecimal).
void TestSourceTree::windowsAttributes()
{
    SourceEntry file = entry("app.exe");
    file.mode.reset();
    file.attributes = 0x2001;
    SourceEntry folder = entry("folder", Kind::Folder);
    folder.mode.reset();
    folder.attributes = 0x2012;
    TreeOptions options;
    auto plan = std::get<SourcePlan>(planTree("/folder", {file, folder}, options));
    QCOMPARE(*plan.files.constFirst().attributes, 0x2001u);
    QVERIFY(!plan.needsStaging);
    options.permissions = TreeOptions::Permissions::Uniform;
    plan = std::get<SourcePlan>(planTree("/folder", {file, folder}, options));
    QCOMPARE(*plan.files.constFirst().attributes, 0x21u);
    QCOMPARE(*plan.folders.constFirst().attributes, 0x12u);
    QVERIFY(!plan.files.constFirst().mode);
}

void TestSourceTree::onlyChangedFilesAreCopied()
{
    SourceEntry late = entry("late");
    late.modified = 2000;
    late.size = 5;
    SourceEntry readOnly = entry("fixed");
    readOnly.mustNotBeLinked = true;
    readOnly.size = 7;
    TreeOptions options;
    options.times.limit = 1500;
    const auto plan
        = std::get<SourcePlan>(planTree("/folder", {entry("app.exe"), late, readOnly}, options));
    QCOMPARE(plan.totalBytes, 22);
    QCOMPARE(plan.bytesToCopy(true), 12);
    QCOMPARE(plan.bytesToCopy(false), 22);
    QCOMPARE(plan.files.constLast().path, "late");
    QCOMPARE(plan.files.constLast().modified, 1500);
}

void TestSourceTree::aHundredThousandFiles()
{
    Entries entries;
    for (int folder = 0; folder < 100; ++folder) {
        const QString name = QStringLiteral("folder%1").arg(folder);
        entries << entry(name, Kind::Folder);
        for (int file = 0; file < 1000; ++file) {
            entries << entry(QStringLiteral("%1/file%2.txt").arg(name).arg(file));
        }
    }
    TreeOptions options;
    options.excludes = QStringList{"*.pdb", ".git/", "*.obj", "*7.txt"};
    const auto plan = std::get<SourcePlan>(planTree("/folder", entries, options));
    QCOMPARE(plan.files.size(), 90000);
}

void TestSourceTree::kindsOfWindowsEntries_data()
{
    QTest::addColumn<quint32>("attributes");
    QTest::addColumn<quint32>("tag");
    QTest::addColumn<int>("kind");
    const auto row = [](const char *name, quint32 attributes, quint32 tag, Kind kind) {
        QTest::newRow(name) << attributes << tag << static_cast<int>(kind);
    };
    row("a file", 0x20, 0, Kind::File);
    row("a folder", 0x10, 0, Kind::Folder);
    row("a tag that is none", 0x20, 0xa000000c, Kind::File);
    row("a symbolic link", 0x420, 0xa000000c, Kind::Link);
    row("a link to a folder", 0x410, 0xa000000c, Kind::Link);
    row("a junction", 0x410, 0xa0000003, Kind::Link);
    row("a file in the cloud", 0x500420, 0x9000601a, Kind::File);
    row("a folder in the cloud", 0x410, 0x9000001a, Kind::Folder);
    row("a file with deduplication", 0x420, 0x80000013, Kind::File);
    row("a compressed system file", 0x420, 0x80000017, Kind::File);
    row("a link of the Linux subsystem", 0x420, 0xa000001d, Kind::Link);
    row("its socket", 0x420, 0x80000023, Kind::Socket);
    row("its pipe", 0x420, 0x80000024, Kind::Pipe);
    row("its character device", 0x420, 0x80000025, Kind::Device);
    row("its block device", 0x420, 0x80000026, Kind::Device);
}

void TestSourceTree::kindsOfWindowsEntries()
{
    QFETCH(const quint32, attributes);
    QFETCH(const quint32, tag);
    QTEST(static_cast<int>(kindOfWindowsEntry(attributes, tag)), "kind");
}

QTEST_GUILESS_MAIN(TestSourceTree)
#include "tst_sourcetree.moc"
