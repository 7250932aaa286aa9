// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/outputguard.h"

#include "tests/fakes/privatetemp.h"
#include "tests/support/onwindows.h"
#include "tests/support/testfiles.h"

#include <QTest>

#include <optional>

class TestOutputGuard : public QObject
{
    Q_OBJECT

private slots:
    void theOlderOutputStaysUntilTheNewOneIsPutInPlace()
    {
        PrivateTemp temp;
        const QString output = temp.filePath("a.exe");
        QVERIFY(writeFile(output, "older"));
        OutputGuard guard(output, "a.exe");
        QCOMPARE(guard.hold(), QString());
        QVERIFY(writeFile(guard.madeFile(), "new"));
        QCOMPARE(readFile(output), QByteArray("older"));
        QCOMPARE(guard.putInPlace(), QString());
        QCOMPARE(readFile(output), QByteArray("new"));
        guard.release();
        QCOMPARE(temp.names(), QStringList("a.exe"));
    }

    void releasingKeepsTheOlderOutputAndWhatIsNotOurs()
    {
        PrivateTemp temp;
        const QString output = temp.filePath("a.exe");
        const QStringList names{"a.exe", "a.exe.bak", "a.exe.previous"};
        for (const QString &name : names) {
            QVERIFY(writeFile(temp.filePath(name), "the user's " + name.toUtf8()));
        }
        OutputGuard guard(output, "a.exe");
        QCOMPARE(guard.hold(), QString());
        QVERIFY(writeFile(guard.madeFile(), "half made"));
        QVERIFY(writeFile(guard.madeFile() + ".bak", "the engine's backup"));
        guard.release();
        QCOMPARE(temp.names(), names);
        for (const QString &name : names) {
            QCOMPARE(readFile(temp.filePath(name)), "the user's " + name.toUtf8());
        }
    }

    void anOutputThatCannotBeReplacedIsAnError()
    {
        PrivateTemp temp;
        const QString output = temp.filePath("a.exe");
        OutputGuard guard(output, "a.exe");
        QCOMPARE(guard.hold(), QString());
        QVERIFY(writeFile(guard.madeFile(), "new"));
        QVERIFY(QDir(temp.path()).mkpath("a.exe/a folder with that name"));
        if (onWindows) {
            QSKIP("a folder is renamed like a running program here");
        }
        QVERIFY(!guard.putInPlace().isEmpty());
        guard.release();
        QCOMPARE(temp.names(), QStringList("a.exe"));
        QVERIFY(QDir(output).exists("a folder with that name"));
    }

    void oneAtATimeHoldsAnOutput_data()
    {
        QTest::addColumn<QString>("second");
        QTest::addColumn<bool>("refused");
        QTest::newRow("the same") << "a.exe" << true;
        QTest::newRow("the same in capitals") << "A.exe" << true;
        QTest::newRow("another in the same directory") << "b.exe" << false;
        QTest::newRow("one of the same name elsewhere") << "elsewhere/a.exe" << false;
    }
    void oneAtATimeHoldsAnOutput()
    {
        QFETCH(QString, second);
        QFETCH(bool, refused);
        PrivateTemp temp;
        QVERIFY(QDir(temp.path()).mkpath("elsewhere"));
        std::optional<OutputGuard> first(std::in_place, temp.filePath("a.exe"), "a.exe");
        QCOMPARE(first->hold(), QString());
        QVERIFY(writeFile(first->madeFile(), "new"));
        {
            OutputGuard other(temp.filePath(second), second);
            QCOMPARE(other.hold(),
                     refused ? "another job is making " + temp.filePath(second) : QString());
        }
        QCOMPARE(readFile(first->madeFile()), QByteArray("new"));
        first.reset();
        OutputGuard again(temp.filePath(second), second);
        QCOMPARE(again.hold(), QString());
        again.release();
        QCOMPARE(temp.names(), QStringList("elsewhere"));
    }

    void whatAKilledJobLeftIsRemoved()
    {
        PrivateTemp temp;
        const QString output = temp.filePath("a.exe");
        QString directory;
        QString otherDirectory;
        {
            OutputGuard guard(output, "a.exe");
            OutputGuard other(temp.filePath("b.exe"), "b.exe");
            QVERIFY(guard.hold().isEmpty() && other.hold().isEmpty());
            directory = guard.directory();
            otherDirectory = other.directory();
        }
        QVERIFY(QDir().mkpath(directory) && QDir().mkpath(otherDirectory));
        QVERIFY(writeFile(directory + "/a.exe", "half made"));
        if (!onWindows) { // on Windows the lock file disappears with its process
            QVERIFY(writeFile(QString(directory).replace(".tmp", ".lock"), ""));
        }
        OutputGuard guard(output, "a.exe");
        QCOMPARE(guard.hold(), QString());
        QCOMPARE(guard.directory(), directory);
        QVERIFY(!QFile::exists(guard.madeFile()));
        guard.release();
        QCOMPARE(temp.names(), QStringList(QFileInfo(otherDirectory).fileName()));
    }

    void aLinkInThePlaceOfTheDirectoryIsNotFollowed()
    {
        if (onWindows) {
            QSKIP("a link to a folder is a shortcut file here");
        }
        PrivateTemp temp;
        const QString output = temp.filePath("a.exe");
        QVERIFY(QDir(temp.path()).mkpath("precious"));
        QVERIFY(writeFile(temp.filePath("precious/file"), "content"));
        QString directory;
        {
            OutputGuard guard(output, "a.exe");
            QCOMPARE(guard.hold(), QString());
            directory = guard.directory();
        }
        QVERIFY(QFile::link(temp.filePath("precious"), directory));
        OutputGuard guard(output, "a.exe");
        QCOMPARE(guard.hold(), QString());
        QVERIFY(guard.directory() != directory);
        guard.release();
        QCOMPARE(readFile(temp.filePath("precious/file")), QByteArray("content"));
    }
};

QTEST_GUILESS_MAIN(TestOutputGuard)
#include "tst_outputguard.moc"
