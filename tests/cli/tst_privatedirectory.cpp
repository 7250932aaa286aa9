// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/privatedirectory.h"

#include "cli/useronly.h"
#include "cli/useronlyrights.h"
#include "tests/fakes/privatetemp.h"
#include "tests/support/onwindows.h"
#include "tests/support/testfiles.h"

#include <QTest>

class TestPrivateDirectory : public QObject
{
    Q_OBJECT

private slots:
    void nothingIsLeft()
    {
        PrivateTemp temp;
        {
            const PrivateDirectory directory;
            QVERIFY(directory.isValid());
            QVERIFY(writeFile(directory.archivePath(), "archive"));
            QCOMPARE(temp.names().size(), 2); // the directory and its lock file
        }
        QCOMPARE(temp.names(), QStringList());
    }

    void itIsTheUsersAlone()
    {
        PrivateTemp temp;
        const PrivateDirectory directory;
        QVERIFY(isOwnDirectory(directory.path()));
        if (onWindows) {
            QSKIP("its access list has a table of its own");
        }
        QCOMPARE(QFileInfo(directory.path()).permissions() & QFile::Permissions(0x0077),
                 QFile::Permissions());
    }

    void rights_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<bool>("isElevated");
        QTest::addColumn<QString>("rights");
        QTest::newRow("a user")
            << "S-1-5-21-7" << false
            << "O:S-1-5-21-7D:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;FA;;;S-1-5-21-7)";
        QTest::newRow("an elevated process")
            << "S-1-5-21-7" << true
            << "O:S-1-5-21-7D:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;FA;;;S-1-5-21-7)"
               "S:(ML;OICI;NW;;;HI)";
        QTest::newRow("the system does not tell the user")
            << "" << false << "D:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)";
    }
    void rights()
    {
        QFETCH(QString, user);
        QFETCH(bool, isElevated);
        QTEST(userOnlyRights(user, isElevated), "rights");
    }

    void anEnteredOneIsTheTemporaryDirectoryOfThisProcess()
    {
        PrivateTemp temp; // its destructor restores the variable
        PrivateDirectory directory;
        QVERIFY(directory.enter());
        QCOMPARE(QFileInfo(QDir::tempPath()).canonicalFilePath(),
                 QFileInfo(directory.path()).canonicalFilePath());
    }

    void thoseOfKilledJobsAreRemovedAndThoseInUseStay()
    {
        PrivateTemp temp;
        const PrivateDirectory first;
        QVERIFY(writeFile(first.archivePath(), "in use"));
        QString error;
        for (const char *name : {"kestrelpack-cli-00000000", "kestrelpack-cli-11111111"}) {
            QVERIFY2(makeUserOnlyDirectory(temp.filePath(name), error), qPrintable(error));
        }
        QVERIFY(QDir(temp.path()).mkpath("kestrelpack-cli-00000000/with a folder"));
        QVERIFY(writeFile(temp.filePath("kestrelpack-cli-00000000/temp.7z"), "of a killed job"));
        if (!onWindows) { // on Windows the lock file disappears with its process
            QVERIFY(writeFile(temp.filePath("kestrelpack-cli-00000000.lock"), ""));
            QVERIFY(writeFile(temp.filePath("kestrelpack-cli-22222222.lock"), ""));
        }
        QVERIFY(QDir(temp.path()).mkpath("somebody else's"));
        {
            const PrivateDirectory second;
            QVERIFY(second.isValid());
            QVERIFY(second.path() != first.path());
        }
        const QString name = QFileInfo(first.path()).fileName();
        QCOMPARE(temp.names(), QStringList({name, name + ".lock", "somebody else's"}));
        QCOMPARE(readFile(first.archivePath()), QByteArray("in use"));
    }

    void aLinkIsNotFollowed()
    {
        if (onWindows) {
            QSKIP("a link to a folder is a shortcut file here");
        }
        PrivateTemp temp;
        QVERIFY(QDir(temp.path()).mkpath("precious"));
        QVERIFY(writeFile(temp.filePath("precious/file"), "content"));
        QVERIFY(QFile::link(temp.filePath("precious"), temp.filePath("kestrelpack-cli-00000000")));
        QVERIFY(QFile::link(temp.filePath("nowhere"), temp.filePath("kestrelpack-cli-11111111")));
        const PrivateDirectory directory;
        QVERIFY(directory.isValid());
        QCOMPARE(readFile(temp.filePath("precious/file")), QByteArray("content"));
    }
};

QTEST_GUILESS_MAIN(TestPrivateDirectory)
#include "tst_privatedirectory.moc"
