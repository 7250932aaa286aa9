// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/archivedirectory.h"

#include "tests/fakes/privatetemp.h"
#include "tests/support/onwindows.h"
#include "tests/support/testfiles.h"

#include <QTest>

class TestArchiveDirectory : public QObject
{
    Q_OBJECT

private slots:
    void nothingIsLeft()
    {
        PrivateTemp temp;
        {
            const ArchiveDirectory directory;
            QVERIFY(directory.isValid());
            QVERIFY(writeFile(directory.archivePath(), "archive"));
            QCOMPARE(temp.names().size(), 2); // the directory and its lock file
        }
        QCOMPARE(temp.names(), QStringList());
    }

    void itIsTheUsersAlone()
    {
        if (onWindows) {
            QSKIP("the temporary directory is the user's alone here");
        }
        PrivateTemp temp;
        const ArchiveDirectory directory;
        QCOMPARE(QFileInfo(QFileInfo(directory.archivePath()).path()).permissions()
                     & (QFile::Permissions(0x0077)),
                 QFile::Permissions());
    }

    void thoseOfKilledJobsAreRemovedAndThoseInUseStay()
    {
        PrivateTemp temp;
        const ArchiveDirectory first;
        QVERIFY(writeFile(first.archivePath(), "in use"));
        QVERIFY(QDir(temp.path()).mkpath("kestrelpack-cli-00000000/with a folder"));
        QVERIFY(writeFile(temp.filePath("kestrelpack-cli-00000000/temp.7z"), "of a killed job"));
        QVERIFY(QDir(temp.path()).mkpath("kestrelpack-cli-11111111"));
        if (!onWindows) { // on Windows the lock file disappears with its process
            QVERIFY(writeFile(temp.filePath("kestrelpack-cli-00000000.lock"), ""));
            QVERIFY(writeFile(temp.filePath("kestrelpack-cli-22222222.lock"), ""));
        }
        QVERIFY(QDir(temp.path()).mkpath("somebody else's"));
        {
            const ArchiveDirectory second;
            QVERIFY(second.isValid());
            QVERIFY(second.archivePath() != first.archivePath());
        }
        const QString name = QFileInfo(QFileInfo(first.archivePath()).path()).fileName();
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
        const ArchiveDirectory directory;
        QVERIFY(directory.isValid());
        QCOMPARE(readFile(temp.filePath("precious/file")), QByteArray("content"));
    }
};

QTEST_GUILESS_MAIN(TestArchiveDirectory)
#include "tst_archivedirectory.moc"
