// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/keptrun.h"

#include <QDir>
#include <QTest>

#include <vector>

using namespace Qt::StringLiterals;

// The first start of a produced file with Keep unpacks into the profile; others start from there.
class TestKeptFolder : public KeptTest
{
    Q_OBJECT

private slots:
    void keepsAndUsesAgain();
    void decodesNothingAgain();
    void isAnotherOneForOtherContent_data();
    void isAnotherOneForOtherContent();
    void isMadeOnceForAll_data();
    void isMadeOnceForAll();
    void worksInAnyProfile_data();
    void worksInAnyProfile();
    void worksWithLongPaths();
    void isNotUsedWithoutAProfile_data();
    void isNotUsedWithoutAProfile();
    void isNotUsedIfPathsBecomeTooLong();
    void isNotUsedByAnAdministrator();
    void isNotUsedIfSomebodyPreparedIt_data();
    void isNotUsedIfSomebodyPreparedIt();
    void keepsNothingOfADamagedFile();
    void outlivesALauncher();
};

void TestKeptFolder::keepsAndUsesAgain()
{
    const QString file = assembleUsual();
    const Run first = run(file, u" --exit=7"_s);
    QVERIFY2(isKept(first), first.output + first.errors);
    QVERIFY(hasTree(usualTree()));
    QCOMPARE(keptFolders().size(), 1);
    QCOMPARE(besideKept(),
             QStringList({keptFolders().first() + u".lock"_s, keptFolders().first() + u".used"_s}));
    const auto written = marks();
    QCOMPARE(written.size(), 5);
    const Run second = run(file);
    QVERIFY(isKept(second));
    QCOMPARE(second.value("program"), first.value("program"));
    QCOMPARE(second.value("KESTRELPACK_DIR"), second.value("program").chopped(9));
    QCOMPARE(marks(), written);
}

// The packed data are damaged, and nobody reads them.
void TestKeptFolder::decodesNothingAgain()
{
    const QString file = assembleUsual();
    QVERIFY(isKept(run(file)));
    QByteArray bytes = contentOf(file);
    const QByteArray end = ";!@InstallEnd@!\n";
    const qsizetype data = bytes.lastIndexOf(end) + end.size() + 32;
    bytes.replace(data, 1000, QByteArray(1000, 'x'));
    QVERIFY(writeFile(file, bytes));
    QVERIFY(isKept(run(file)));
    QVERIFY(hasTree(usualTree()));
}

void TestKeptFolder::isAnotherOneForOtherContent_data()
{
    QTest::addColumn<QString>("changed");
    QTest::addColumn<QByteArray>("settings");
    QTest::newRow("another content of the same size") << u"data.txt"_s << QByteArray();
    QTest::newRow("one file more") << u"more.txt"_s << QByteArray();
    QTest::newRow("another product") << QString() << QByteArray("Product=\"other\"\n");
    QTest::newRow("another name of the folder") << QString() << QByteArray("Folder=\"other\"\n");
}

void TestKeptFolder::isAnotherOneForOtherContent()
{
    QFETCH(QString, changed);
    QFETCH(QByteArray, settings);
    const QString file = assembleUsual();
    QVERIFY(isKept(run(file)));
    Tree tree = usualTree();
    if (!changed.isEmpty()) {
        tree[changed] = "SOME DATA";
    }
    QVERIFY(isKept(run(assemble(u"other"_s, tree, settings))));
    QCOMPARE(keptFolders().size(), 2);
}

void TestKeptFolder::isMadeOnceForAll_data()
{
    QTest::addColumn<int>("starts");
    QTest::newRow("two") << 2;
    QTest::newRow("twenty") << 20;
}

// All run from one folder at the same time.
void TestKeptFolder::isMadeOnceForAll()
{
    QFETCH(int, starts);
    Tree tree = usualTree();
    for (int i = 0; i < 200; ++i) {
        tree[u"many/%1.txt"_s.arg(i)] = QByteArray::number(i);
    }
    const QString file = assemble(u"many"_s, tree);
    std::vector<std::unique_ptr<QProcess>> running;
    for (int i = 0; i < starts; ++i) {
        running.push_back(start(file, u" --wait"_s));
        QVERIFY(running.back() != nullptr);
    }
    QSet<QByteArray> programs;
    for (const auto &process : running) {
        const QByteArray output = ModuleRun::waitForOutput(*process, "KESTRELPACK_DIR=");
        QVERIFY(!output.isEmpty());
        programs += output.mid(output.indexOf("program=")).split('\n').first();
    }
    QCOMPARE(programs.size(), 1);
    QVERIFY2(programs.values().first().contains("\\Kestrelpack\\"), programs.values().first());
    QVERIFY(hasTree(tree));
    for (const auto &process : running) {
        QCOMPARE(ModuleRun::finish(*process).exitCode, 7);
    }
    QCOMPARE(keptFolders().size(), 1);
    QCOMPARE(besideKept().size(), 2);
    QVERIFY(hasTree(tree));
}

void TestKeptFolder::worksInAnyProfile_data()
{
    QTest::addColumn<QString>("profile");
    QTest::newRow("with Chinese letters and blanks") << u"\u7528\u6237 \u540d/Local data"_s;
    QTest::newRow("outside of the code page") << u"\U0001f600 \u00fc \u0416"_s;
}

void TestKeptFolder::worksInAnyProfile()
{
    QFETCH(QString, profile);
    QVERIFY(renewProfile(profile));
    Tree tree = usualTree();
    tree[u"\u7a0b/x.txt"_s] = "x";
    const QString file = assemble(u"usual"_s, tree);
    const Run first = run(file);
    QVERIFY2(isKept(first), first.output + first.errors);
    QVERIFY(hasTree(tree));
    const auto written = marks();
    QVERIFY(isKept(run(file)));
    QCOMPARE(marks(), written);
}

// Wine starts no program whose path is longer than 259 units, so the program's is just short enough.
// A private folder would have no shorter paths here.
void TestKeptFolder::worksWithLongPaths()
{
    const QString rest = windowsPath(m_run.path(u"deep/"_s)) + u"/Kestrelpack/"_s
        + QString(64, u'0') + u"/main/main.exe"_s;
    QVERIFY(renewProfile(u"deep/"_s + QString(259 - rest.size(), u'p')));
    QVERIFY(m_run.renewTemporaryFolder(u"deep temp "_s + QString(140, u't')));
    Tree tree = usualTree();
    tree[u"lib/"_s + QString(60, u'\u7a0b') + u'/' + QString(60, u'x') + u".txt"_s] = "x";
    const QString file = assemble(u"usual"_s, tree);
    const Run first = run(file);
    QVERIFY2(isKept(first), first.output + first.errors);
    QCOMPARE(first.value("program").size(), 259);
    QVERIFY(hasTree(tree));
    const auto written = marks();
    QVERIFY(isKept(run(file)));
    QCOMPARE(marks(), written);
    QVERIFY(QFile::remove(application() + u"/lib/"_s + QString(60, u'\u7a0b') + u'/'
                          + QString(60, u'x') + u".txt"_s));
    QVERIFY(isKept(run(file)));
    QVERIFY(hasTree(tree));
}

void TestKeptFolder::isNotUsedWithoutAProfile_data()
{
    QTest::addColumn<QString>("profile");
    QTest::newRow("none") << u"-"_s;
    QTest::newRow("an empty name") << QString();
    QTest::newRow("a folder that does not exist") << windowsPath(m_run.path(u"missing"_s));
    QTest::newRow("a drive that does not exist") << u"Q:\\Users"_s;
    QTest::newRow("a path that depends on the working folder") << u"made"_s;
    QTest::newRow("a path that depends on the drive") << u"\\tmp"_s;
    QTest::newRow("a file") << windowsPath(m_run.path(u"profile/own.txt"_s));
}

void TestKeptFolder::isNotUsedWithoutAProfile()
{
    QFETCH(QString, profile);
    const QString file = assembleUsual();
    const Run result = m_run.run(file, QString(), {u"--profile="_s + profile});
    QVERIFY2(isPrivate(result), result.output + result.errors);
    QVERIFY(!QFile::exists(m_run.path(u"missing"_s)));
    QVERIFY(!QFile::exists(m_run.path(u"made/Kestrelpack"_s)));
}

void TestKeptFolder::isNotUsedIfPathsBecomeTooLong()
{
    const QString folder
        = windowsPath(m_profile + u"/Kestrelpack/"_s + QString(64, u'0') + u"/main/"_s);
    Tree tree = usualTree();
    tree[u"main/"_s + QString(259 - folder.size() - 5, u'x')] = "just short enough";
    QVERIFY(isKept(run(assemble(u"long"_s, tree))));
    tree[u"main/"_s + QString(260 - folder.size() - 5, u'y')] = "too long";
    QVERIFY(isPrivate(run(assemble(u"longer"_s, tree))));
    QCOMPARE(keptFolders().size(), 1);
}

void TestKeptFolder::isNotUsedByAnAdministrator()
{
    // Wine gives every process an administrator's rights.
    const QString file = assemble(u"elevated"_s, usualTree(), QByteArray(),
                                  QString::fromLatin1(ModuleRun::fullModule));
    QVERIFY(isPrivate(run(file)));
    QCOMPARE(keptFolders(), QStringList());
    QVERIFY(isKept(run(assembleUsual())));
    QVERIFY(isPrivate(run(file))); // the same content
}

void TestKeptFolder::isNotUsedIfSomebodyPreparedIt_data()
{
    QTest::addColumn<bool>("isLink");
    QTest::newRow("a link in place of the folder of all") << true;
    QTest::newRow("a file in place of the folder of all") << false;
}

void TestKeptFolder::isNotUsedIfSomebodyPreparedIt()
{
    QFETCH(bool, isLink);
    const QString moved = m_profile + u"/moved"_s;
    QVERIFY(QFile::rename(base(), moved));
    QVERIFY(isLink ? QFile::link(moved, base()) : writeFile(base(), "mine"));
    QVERIFY(isPrivate(run(assembleUsual())));
    QCOMPARE(QDir(moved).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 2);
    QVERIFY(QFile::remove(base()));
    QVERIFY(QFile::rename(moved, base()));
}

void TestKeptFolder::keepsNothingOfADamagedFile()
{
    const QString path = assemble(u"damaged"_s, {{u"data.bin"_s, noise(100000, 5)}});
    QByteArray bytes = contentOf(path);
    const qsizetype middle = bytes.size() - 40000;
    bytes[middle] = static_cast<char>(bytes[middle] ^ 1);
    QVERIFY(writeFile(path, bytes));
    const Run result = run(path);
    QCOMPARE(result.exitCode, lowByte(sfx::ExitCode::Damaged));
    QCOMPARE(result.value("program"), QString());
    QCOMPARE(keptFolders(), QStringList());
    QCOMPARE(besideKept(), QStringList());
}

// The module waits for what a launcher has started, as with a private folder.
void TestKeptFolder::outlivesALauncher()
{
    Tree tree = usualTree();
    tree[u"data.txt"_s] = "still here";
    const Run result = run(assemble(u"launcher"_s, tree), u" --launch=2"_s);
    QVERIFY(isKept(result));
    QVERIFY2(result.output.contains("data=still here"), result.output);
}

QTEST_GUILESS_MAIN(TestKeptFolder)
#include "tst_keptfolder.moc"
