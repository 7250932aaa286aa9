// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/keptrun.h"

#include <QDir>
#include <QTest>

#include <functional>
#include <unistd.h>

using namespace Qt::StringLiterals;

using Change = std::function<bool(const QString &folder)>;

namespace {

bool append(const QString &path)
{
    QFile file(path);
    return file.open(QFile::Append) && file.write("more") == 4;
}

bool linkTo(const QString &target, const QString &path)
{
    return symlink(QFile::encodeName(target).constData(), QFile::encodeName(path).constData()) == 0;
}

bool removeFolder(const QString &path)
{
    return QDir(path).removeRecursively();
}

} // namespace

// Somebody changes a kept folder between two starts.
class TestKeptAlterations : public KeptTest
{
    Q_OBJECT

private slots:
    void putsRight_data();
    void putsRight();
    void leavesAloneWhatIsNotOurs();
    void noticesChangedContentsIfAsked_data();
    void noticesChangedContentsIfAsked();
    void comparesContentsAfterAStartOfTheSystem();
    void worksWithoutItsRecord_data();
    void worksWithoutItsRecord();
    void doesNotRepairUnderARunningProgram();
    void givesWayToAFolderWithOwnFiles();
    void neverFollowsALink_data();
    void neverFollowsALink();
    void decodesOnlyTheBlockThatItNeeds();

private:
    void addChange(const char *name, const Change &change, bool rewritesOne = true);

    QMap<QByteArray, Change> m_changes;
    QString m_file;
};

void TestKeptAlterations::addChange(const char *name, const Change &change, bool rewritesOne)
{
    m_changes[name] = change;
    QTest::newRow(name) << rewritesOne;
}

void TestKeptAlterations::putsRight_data()
{
    QTest::addColumn<bool>("rewritesOne");
    addChange("a file is missing",
              [](const QString &folder) { return QFile::remove(folder + u"/data.txt"_s); });
    addChange("the program is missing",
              [](const QString &folder) { return QFile::remove(folder + u"/main.exe"_s); });
    addChange("an empty file is missing",
              [](const QString &folder) { return QFile::remove(folder + u"/empty.txt"_s); });
    addChange("a file is longer",
              [](const QString &folder) { return append(folder + u"/data.txt"_s); });
    addChange("a file is shorter",
              [](const QString &folder) { return QFile::resize(folder + u"/lib/a.dll"_s, 2999); });
    addChange("a file is empty", [](const QString &folder) {
        return QFile::resize(folder + u"/lib/deep/b.dll"_s, 0);
    });
    addChange("an empty file is not",
              [](const QString &folder) { return append(folder + u"/empty.txt"_s); });
    addChange("a file has other bytes and another time", [](const QString &folder) {
        return writeFile(folder + u"/data.txt"_s, "SOME DATA");
    });
    addChange("a file has another time only",
              [](const QString &folder) { return setAge(folder + u"/data.txt"_s, 1); });
    addChange("a file has been made again", [](const QString &folder) {
        return QFile::remove(folder + u"/data.txt"_s)
            && writeFile(folder + u"/data.txt"_s, "SOME DATA");
    });
    addChange(
        "an empty folder is missing",
        [](const QString &folder) { return removeFolder(folder + u"/empty"_s); }, false);
    addChange(
        "a file in place of an empty folder",
        [](const QString &folder) {
            return removeFolder(folder + u"/empty"_s) && writeFile(folder + u"/empty"_s, "a file");
        },
        false);
    addChange("a folder with one file is missing",
              [](const QString &folder) { return removeFolder(folder + u"/lib/deep"_s); });
    addChange("an empty folder in place of a file", [](const QString &folder) {
        return QFile::remove(folder + u"/data.txt"_s) && QDir().mkdir(folder + u"/data.txt"_s);
    });
    addChange("a file in place of a folder", [](const QString &folder) {
        return removeFolder(folder + u"/lib/deep"_s)
            && writeFile(folder + u"/lib/deep"_s, "a file");
    });
}

void TestKeptAlterations::putsRight()
{
    QFETCH(bool, rewritesOne);
    const QString file = assembleUsual();
    QVERIFY(isKept(run(file)));
    const auto before = marks();
    QVERIFY(m_changes[QTest::currentDataTag()](application()));
    const Run result = run(file);
    QVERIFY2(isKept(result), result.output + result.errors);
    QVERIFY(hasTree(usualTree()));
    int rewritten = 0;
    const auto after = marks();
    for (auto mark = after.cbegin(); mark != after.cend(); ++mark) {
        rewritten += mark.value() == before.value(mark.key()) ? 0 : 1;
    }
    QCOMPARE(rewritten, rewritesOne ? 1 : 0);
    QVERIFY(isKept(run(file)));
    QCOMPARE(marks(), after); // and now it stays
}

void TestKeptAlterations::leavesAloneWhatIsNotOurs()
{
    const QString file = assembleUsual();
    QVERIFY(isKept(run(file)));
    const Tree own{{u"settings.ini"_s, "mine"},
                   {u"lib/cache/x.bin"_s, "mine, too"},
                   {u"lib/DATA.TXT"_s, "another folder's name"}};
    QVERIFY(writeTree(application(), own));
    QVERIFY(writeTree(application() + u"/.."_s, {{u"beside.txt"_s, "mine"}}));
    QVERIFY(QFile::remove(application() + u"/data.txt"_s));
    QVERIFY(isKept(run(file)));
    QVERIFY(hasTree(usualTree()));
    QVERIFY(hasTree(own));
    QCOMPARE(contentOf(application() + u"/../beside.txt"_s), QByteArray("mine"));
}

void TestKeptAlterations::noticesChangedContentsIfAsked_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<bool>("notices");
    QTest::newRow("without") << QByteArray() << false;
    QTest::newRow("with KeepVerify=0") << QByteArray("KeepVerify=\"0\"\n") << false;
    QTest::newRow("with KeepVerify=1") << QByteArray("KeepVerify=\"1\"\n") << true;
}

void TestKeptAlterations::noticesChangedContentsIfAsked()
{
    QFETCH(QByteArray, settings);
    QFETCH(bool, notices);
    const QString file = assembleUsual(settings);
    QVERIFY(isKept(run(file)));
    QVERIFY(changeSecretly(application() + u"/lib/a.dll"_s));
    QVERIFY(isKept(run(file)));
    QCOMPARE(contentOf(application() + u"/lib/a.dll"_s) == usualTree()[u"lib/a.dll"_s], notices);
}

// Until the contents have once been read from the disk, a power failure could have lost them. Wine's
// server stands for the running system.
void TestKeptAlterations::comparesContentsAfterAStartOfTheSystem()
{
    const QString file = assembleUsual();
    QVERIFY(isKept(run(file)));
    const auto restart = [this] {
        ModuleRun::finish(*m_holder);
        const bool hasEnded = m_run.waitForServersEnd();
        m_holder = m_run.hold(m_run.path(u"held"_s));
        return hasEnded && m_holder != nullptr;
    };
    const QString changed = application() + u"/lib/a.dll"_s;
    QVERIFY(restart());
    QVERIFY(changeSecretly(changed));
    QVERIFY(isKept(run(file)));
    QVERIFY(hasTree(usualTree()));
    // The new content may be in memory only, so it is compared once more.
    QVERIFY(restart());
    QVERIFY(isKept(run(file)));
    QVERIFY(restart());
    QVERIFY(changeSecretly(changed));
    const auto before = marks();
    QVERIFY(isKept(run(file)));
    QCOMPARE(marks(), before);
}

void TestKeptAlterations::worksWithoutItsRecord_data()
{
    QTest::addColumn<bool>("changes");
    QTest::addColumn<int>("size"); // -1: the record is missing
    QTest::newRow("the record is missing") << false << -1;
    QTest::newRow("the record is empty") << false << 0;
    QTest::newRow("the record is cut") << false << 30;
    QTest::newRow("the record is missing, and contents are wrong") << true << -1;
    QTest::newRow("the record is empty, and contents are wrong") << true << 0;
}

void TestKeptAlterations::worksWithoutItsRecord()
{
    QFETCH(bool, changes);
    QFETCH(int, size);
    const QString file = assembleUsual();
    QVERIFY(isKept(run(file)));
    const QString record = base() + u'/' + keptFolders().first() + u".used"_s;
    const qint64 whole = QFileInfo(record).size();
    QVERIFY(size < 0 ? QFile::remove(record) : QFile::resize(record, size));
    QVERIFY(!changes || changeSecretly(application() + u"/data.txt"_s));
    QVERIFY(isKept(run(file)));
    QVERIFY(hasTree(usualTree()));
    QCOMPARE(QFileInfo(record).size(), whole);
}

void TestKeptAlterations::doesNotRepairUnderARunningProgram()
{
    const QString file = assembleUsual();
    const auto process = start(file, u" --wait"_s);
    QVERIFY(process != nullptr);
    QVERIFY(!ModuleRun::waitForOutput(*process, "program=").isEmpty());
    QVERIFY(isKept(run(file))); // two at a time
    QVERIFY(append(application() + u"/data.txt"_s));
    QVERIFY(isPrivate(run(file)));
    QCOMPARE(contentOf(application() + u"/data.txt"_s), QByteArray("some datamore"));
    QCOMPARE(ModuleRun::finish(*process).exitCode, 7);
    QVERIFY(isKept(run(file)));
    QVERIFY(hasTree(usualTree()));
}

void TestKeptAlterations::givesWayToAFolderWithOwnFiles()
{
    const QString file = assembleUsual();
    QVERIFY(isKept(run(file)));
    QVERIFY(QFile::remove(application() + u"/data.txt"_s));
    QVERIFY(writeTree(application(), {{u"data.txt/mine.txt"_s, "mine"}}));
    QVERIFY(isPrivate(run(file)));
    QCOMPARE(contentOf(application() + u"/data.txt/mine.txt"_s), QByteArray("mine"));
}

void TestKeptAlterations::neverFollowsALink_data()
{
    QTest::addColumn<QString>("planted"); // in the folder of all kept ones
    QTest::newRow("in place of a folder") << u"*/main/lib"_s;
    QTest::newRow("in place of the application's folder") << u"*/main"_s;
    QTest::newRow("in place of the kept folder") << u"*"_s;
    QTest::newRow("beside the files") << u"*/main/other"_s;
}

// Wine 8 cannot remove a link to a folder, so the files go into a private folder. On Windows the link
// goes. (A link to a file cannot be tested here: Wine shows programs only the file.)
void TestKeptAlterations::neverFollowsALink()
{
    QFETCH(QString, planted);
    const QString file = assembleUsual();
    QVERIFY(isKept(run(file)));
    const QString path = base() + u'/' + planted.replace(u'*', keptFolders().first());
    const bool isBeside = path.endsWith(u"other"_s);
    const QString target = m_run.path(u"target"_s);
    QVERIFY(isBeside ? QDir().mkpath(target) : QFile::rename(path, target));
    QVERIFY(writeTree(target,
                      {{u"mine.txt"_s, "mine"},
                       {u"a.dll"_s, "mine"},
                       {u"main/data.txt"_s, "mine"},
                       {u"data.txt"_s, "mine"}}));
    QVERIFY(linkTo(target, path));
    const Run result = run(file);
    QVERIFY(isBeside ? isKept(result) : isPrivate(result) || isKept(result));
    for (const char *name : {"mine.txt", "a.dll", "main/data.txt", "data.txt"}) {
        QCOMPARE(contentOf(target + u'/' + QLatin1String(name)), QByteArray("mine"));
    }
    QVERIFY(removeFolder(target));
}

// The other block is damaged, which nobody notices then.
void TestKeptAlterations::decodesOnlyTheBlockThatItNeeds()
{
    Tree tree{{u"a.bin"_s, noise(200000, 1)}, {u"b.bin"_s, noise(200000, 2)}};
    QVERIFY(m_run.prepareModule("Keep=\"30\"\n", false, QString::fromLatin1(ordinaryModule)));
    tree[u"main.exe"_s] = ModuleRun::programBytes();
    const QString file = m_run.assemble(packTree(tree, {u"-mx=0"_s, u"-ms=off"_s}), u"main.exe"_s);
    QVERIFY(isKept(run(file)));
    QByteArray bytes = contentOf(file);
    const qsizetype at = bytes.indexOf(tree[u"a.bin"_s].mid(100000, 16));
    QVERIFY(at > 0);
    bytes[at] = static_cast<char>(bytes[at] ^ 1);
    QVERIFY(writeFile(file, bytes));
    QVERIFY(QFile::remove(application() + u"/b.bin"_s));
    QVERIFY(isKept(run(file)));
    QVERIFY(hasTree(tree));
    QVERIFY(QFile::remove(application() + u"/a.bin"_s));
    QCOMPARE(run(file).exitCode, lowByte(sfx::ExitCode::Damaged));
}

QTEST_GUILESS_MAIN(TestKeptAlterations)
#include "tst_keptalterations.moc"
