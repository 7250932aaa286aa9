// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/keptrun.h"

#include <QDateTime>
#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

// A start of any kept product removes kept folders that nobody needs any more.
class TestKeptClearing : public KeptTest
{
    Q_OBJECT

private slots:
    void removesAnOlderVersion();
    void leavesANewerVersion();
    void leavesAnotherProduct();
    void leavesAnOlderVersionInUse();
    void leavesAllOfAFolderWhoseProgramRuns();
    void removesWhatIsNotUsed_data();
    void removesWhatIsNotUsed();
    void startsAgainIfTheClockWasSetBack();
    void recordsTheUse();
    void leavesOwnFiles();
    void doesNotFollowLinks();
    void leavesAloneWhatItDoesNotKnow();
    void removesWhatAKilledStartHasLeft();

private:
    // One version of a product; later ones have newer files.
    QString version(const QString &name, const QByteArray &product = "p");
    // Starts the file and returns its kept folder's name.
    QString keep(const QString &file) const;
    bool exists(const QString &folder) const { return QFile::exists(base() + u'/' + folder); }
};

QString TestKeptClearing::version(const QString &name, const QByteArray &product)
{
    Tree tree = usualTree();
    tree[u"version.txt"_s] = name.toUtf8();
    return assemble(name, tree, "Product=\"" + product + "\"\n");
}

QString TestKeptClearing::keep(const QString &file) const
{
    const Run result = run(file);
    return isKept(result) ? result.value("program").section(u'\\', -3, -3) : QString();
}

void TestKeptClearing::removesAnOlderVersion()
{
    const QString first = version(u"1"_s);
    const QString second = version(u"2"_s);
    const QString older = keep(first);
    QVERIFY(exists(older));
    const QString newer = keep(second);
    QCOMPARE(keptFolders(), QStringList(newer));
    QCOMPARE(besideKept().size(), 2);
}

void TestKeptClearing::leavesANewerVersion()
{
    const QString first = version(u"1"_s);
    const QString newer = keep(version(u"2"_s));
    QVERIFY(!keep(first).isEmpty());
    QVERIFY(exists(newer));
    QCOMPARE(keptFolders().size(), 2);
}

void TestKeptClearing::leavesAnotherProduct()
{
    const QString other = keep(version(u"1"_s, "q"));
    QVERIFY(!keep(version(u"2"_s)).isEmpty());
    QVERIFY(exists(other));
}

void TestKeptClearing::leavesAnOlderVersionInUse()
{
    const QString first = version(u"1"_s);
    const QString second = version(u"2"_s);
    const auto process = start(first, u" --wait"_s);
    QVERIFY(process != nullptr);
    QVERIFY(!ModuleRun::waitForOutput(*process, "program=").isEmpty());
    const QString older = keptFolders().value(0);
    QVERIFY(!keep(second).isEmpty());
    QVERIFY(exists(older));
    Tree tree = usualTree();
    for (auto item = tree.cbegin(); item != tree.cend(); ++item) {
        QVERIFY(exists(older + u"/main/"_s + item.key()));
    }
    QCOMPARE(ModuleRun::finish(*process).exitCode, 7);
    QVERIFY(exists(older));
    QVERIFY(!keep(second).isEmpty());
    QVERIFY(!exists(older));
}

// The program has been started through the shell, say, and does not hold the record. A file that
// nobody may remove stands for it.
void TestKeptClearing::leavesAllOfAFolderWhoseProgramRuns()
{
    const QString older = keep(version(u"1"_s));
    const QString folder = base() + u'/' + older;
    const auto holder = m_run.hold(folder + u"/main/lib/deep/b.dll"_s);
    QVERIFY(holder != nullptr);
    QVERIFY(!keep(version(u"2"_s)).isEmpty());
    QCOMPARE(keptFolders().size(), 2);
    const Tree tree = usualTree();
    for (auto item = tree.cbegin(); item != tree.cend(); ++item) {
        QVERIFY2(exists(older + u"/main/"_s + item.key()), qPrintable(item.key()));
    }
    QVERIFY(QFile::exists(folder + u".used"_s) && QFile::exists(folder + u".lock"_s));
    ModuleRun::finish(*holder);
    QVERIFY(!keep(m_run.path(u"made/produced one, 2.exe"_s)).isEmpty());
    QVERIFY(!exists(older));
}

void TestKeptClearing::removesWhatIsNotUsed_data()
{
    QTest::addColumn<int>("days");
    QTest::addColumn<bool>("isRemoved");
    QTest::newRow("used yesterday") << 1 << false;
    QTest::newRow("used almost thirty days ago") << 29 << false;
    QTest::newRow("not used for more than thirty days") << 31 << true;
    QTest::newRow("not used for years") << 5000 << true;
}

void TestKeptClearing::removesWhatIsNotUsed()
{
    QFETCH(int, days);
    QFETCH(bool, isRemoved);
    const QString other = keep(version(u"1"_s, "q"));
    QVERIFY(setAge(base() + u'/' + other + u".used"_s, days));
    const QString mine = version(u"2"_s);
    QVERIFY(!keep(mine).isEmpty());
    QCOMPARE(exists(other), !isRemoved);
    QCOMPARE(besideKept().size(), isRemoved ? 2 : 4);
    QVERIFY(!keep(mine).isEmpty());
    QCOMPARE(exists(other), !isRemoved);
}

void TestKeptClearing::startsAgainIfTheClockWasSetBack()
{
    const QString other = keep(version(u"1"_s, "q"));
    const QString record = base() + u'/' + other + u".used"_s;
    QVERIFY(setAge(record, -400));
    QVERIFY(!keep(version(u"2"_s)).isEmpty());
    QVERIFY(exists(other));
    const QDateTime used = QFileInfo(record).lastModified();
    QVERIFY2(used <= QDateTime::currentDateTime(), qPrintable(used.toString()));
    QVERIFY(used > QDateTime::currentDateTime().addDays(-1));
}

void TestKeptClearing::recordsTheUse()
{
    const QString file = version(u"1"_s);
    const QString record = base() + u'/' + keep(file) + u".used"_s;
    QVERIFY(setAge(record, 40));
    const auto process = start(file, u" --wait"_s);
    QVERIFY(process != nullptr);
    QVERIFY(!ModuleRun::waitForOutput(*process, "program=").isEmpty());
    const auto isRecent = [&record] {
        return QFileInfo(record).lastModified() > QDateTime::currentDateTime().addDays(-1);
    };
    QVERIFY(isRecent());
    QVERIFY(setAge(record, 40)); // it has run for forty days
    QCOMPARE(ModuleRun::finish(*process).exitCode, 7);
    QVERIFY(isRecent());
}

void TestKeptClearing::leavesOwnFiles()
{
    const QString older = keep(version(u"1"_s));
    const QString folder = base() + u'/' + older;
    const Tree own{{u"main/settings.ini"_s, "mine"},
                   {u"main/lib/cache/x.dll"_s, "mine"},
                   {u"main/own folder/deep/file"_s, "mine"}};
    QVERIFY(writeTree(folder, own));
    QVERIFY(!keep(version(u"2"_s)).isEmpty());
    for (auto item = own.cbegin(); item != own.cend(); ++item) {
        QCOMPARE(contentOf(folder + u'/' + item.key()), item.value());
    }
    QVERIFY(!QFile::exists(folder + u"/main/main.exe"_s));
    QVERIFY(!QFile::exists(folder + u"/main/lib/deep"_s));
    QVERIFY(!QFile::exists(folder + u"/main/empty"_s));
    QVERIFY(!QFile::exists(folder + u".used"_s) && !QFile::exists(folder + u".lock"_s));
    // And the older version starts again, with its own files.
    QVERIFY(isKept(run(m_run.path(u"made/produced one, 1.exe"_s))));
    QCOMPARE(contentOf(folder + u"/main/settings.ini"_s), QByteArray("mine"));
    QVERIFY(QFile::exists(folder + u"/main/main.exe"_s));
}

void TestKeptClearing::doesNotFollowLinks()
{
    const QString older = base() + u'/' + keep(version(u"1"_s));
    const QString target = m_run.path(u"target"_s);
    QVERIFY(QFile::rename(older + u"/main/lib"_s, target));
    QVERIFY(QFile::link(target, older + u"/main/lib"_s));
    QVERIFY(QFile::link(target, older + u"/main/other"_s));
    QVERIFY(!keep(version(u"2"_s)).isEmpty());
    QCOMPARE(contentOf(target + u"/a.dll"_s), usualTree()[u"lib/a.dll"_s]);
    QCOMPARE(contentOf(target + u"/deep/b.dll"_s), usualTree()[u"lib/deep/b.dll"_s]);
    QVERIFY(QDir(target).removeRecursively());
}

void TestKeptClearing::leavesAloneWhatItDoesNotKnow()
{
    const QString digits(64, u'a');
    const Tree tree{{digits + u"/main/no lock file"_s, "x"},
                    {QString(64, u'b') + u"/main/no record"_s, "x"},
                    {QString(64, u'b') + u".lock"_s, ""},
                    {QString(64, u'c') + u"/main/a damaged record"_s, "x"},
                    {QString(64, u'c') + u".lock"_s, ""},
                    {QString(64, u'c') + u".used"_s, QByteArray(72, '\0')},
                    {QString(63, u'd') + u"/main/a short name"_s, "x"},
                    {QString(63, u'd') + u".lock"_s, ""},
                    {QString(64, u'E') + u"/main/capitals"_s, "x"},
                    {QString(64, u'E') + u".lock"_s, ""},
                    {QString(64, u'f') + u".lock/a folder"_s, "x"},
                    {u"other.lock"_s, "x"}};
    QVERIFY(writeTree(base(), tree));
    for (const QString &name : QDir(base()).entryList({u"*.used"_s, u"*.lock"_s})) {
        QVERIFY(setAge(base() + u'/' + name, 5000));
    }
    QVERIFY(isKept(run(version(u"1"_s))));
    for (auto item = tree.cbegin(); item != tree.cend(); ++item) {
        QVERIFY2(exists(item.key()), qPrintable(item.key()));
    }
    QVERIFY(renewProfile());
}

void TestKeptClearing::removesWhatAKilledStartHasLeft()
{
    const QString digits(64, u'a');
    QVERIFY(writeTree(base(),
                      {{digits + u".new/main/x.txt"_s, "x"},
                       {digits + u".lock"_s, ""},
                       {QString(64, u'b') + u".lock"_s, ""}}));
    QVERIFY(!keep(version(u"1"_s)).isEmpty());
    QCOMPARE(keptFolders().size(), 1);
    QCOMPARE(besideKept().size(), 2);
}

QTEST_GUILESS_MAIN(TestKeptClearing)
#include "tst_keptclearing.moc"
