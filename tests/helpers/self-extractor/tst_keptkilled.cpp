// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/keptrun.h"

#include <QTest>

using namespace Qt::StringLiterals;

// A start is killed before each of its calls that change a file, one after the other. The module for
// this test counts them.
class TestKeptKilled : public KeptTest
{
    Q_OBJECT

private slots:
    void init();
    void isRightAfterwards_data();
    void isRightAfterwards();

private:
    bool prepare(const QString &before);
    QString m_older;
    QString m_mortal;
    QString m_usual;
};

void TestKeptKilled::init()
{
    KeptTest::init();
    m_older = assemble(u"older"_s, {{u"older.txt"_s, "older"}}, "Product=\"p\"\n");
    m_mortal = assemble(u"mortal"_s, usualTree(), "Product=\"p\"\n", u"/mortal.sfx"_s);
    m_usual = m_run.path(u"made/produced one, usual.exe"_s);
    // The same archive after another module: the same folder.
    const QByteArray bytes = contentOf(m_mortal);
    QVERIFY(m_run.prepareModule("Keep=\"30\"\nProduct=\"p\"\n", false,
                                QString::fromLatin1(ordinaryModule)));
    const qsizetype block = bytes.indexOf(";!@Install@!UTF-8!\nTitle");
    QVERIFY(block > 0);
    QVERIFY(writeFile(m_usual, m_run.module() + bytes.mid(block)));
}

// What the disk is like before the start that is killed.
bool TestKeptKilled::prepare(const QString &before)
{
    if (!renewProfile()) {
        return false;
    }
    if (before == u"older"_s) {
        return isKept(run(m_older));
    }
    return before.isEmpty()
        || (isKept(run(m_usual)) && QFile::remove(application() + u"/data.txt"_s)
            && QFile::resize(application() + u"/lib/a.dll"_s, 10)
            && writeFile(application() + u"/own.txt"_s, "mine"));
}

void TestKeptKilled::isRightAfterwards_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<int>("leastPoints");
    QTest::newRow("the first start") << QString() << 20;
    QTest::newRow("a start that puts files right") << u"repair"_s << 10;
    QTest::newRow("a start that removes an older version") << u"older"_s << 20;
}

void TestKeptKilled::isRightAfterwards()
{
    QFETCH(QString, before);
    QFETCH(int, leastPoints);
    int points = 0;
    for (bool isKilled = true; isKilled; ++points) {
        QVERIFY(prepare(before));
        qputenv("KESTRELPACK_TEST_DIES_AT", QByteArray::number(points + 1));
        const Run killed = run(m_mortal);
        qunsetenv("KESTRELPACK_TEST_DIES_AT");
        isKilled = killed.exitCode == 99;
        QVERIFY2(isKilled ? killed.output.contains("ended=99") : killed.exitCode == 7,
                 killed.output + killed.errors);
        QVERIFY(points < 500);
        WAIT_COMPARE(ModuleRun::processesFrom(m_profile), QList<qint64>());

        const Run next = run(m_usual);
        QVERIFY2(isKept(next), qPrintable(QString::number(points)));
        QCOMPARE(keptFolders().size(), 1);
        QCOMPARE(besideKept().size(), 2);
        QVERIFY2(hasTree(usualTree()), qPrintable(QString::number(points)));
        QVERIFY(before != u"repair"_s
                || contentOf(application() + u"/own.txt"_s) == QByteArray("mine"));
        QCOMPARE(m_run.leftovers(), QStringList());
    }
    qInfo("killed at %d points", points - 1);
    QVERIFY(points > leastPoints);
}

QTEST_GUILESS_MAIN(TestKeptKilled)
#include "tst_keptkilled.moc"
