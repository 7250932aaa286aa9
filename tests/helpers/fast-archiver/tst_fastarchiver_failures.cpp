// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/faults/conditions.h"
#include "tests/helpers/fast-archiver/archiverprocess.h"
#include "tests/support/testfiles.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>

#include <sys/stat.h>

// Jobs that cannot succeed. They end with 7-Zip's exit status for such a failure and one line, and
// leave no archive.
class TestFastArchiverFailures : public QObject
{
    Q_OBJECT

private:
    QString folder() const { return m_temp->filePath("folder"); }
    QString out() const { return m_temp->filePath("out"); }
    QString archivePath() const { return out() + "/made.7z"; }

    ArchiverResult pack() const
    {
        return runArchiver(KESTRELPACK_FAST_ARCHIVER,
                           archiverArguments(archivePath(), folder(), "ZSTD"));
    }

    void checkFailure(const ArchiverResult &result, int status, const QString &message) const
    {
        QCOMPARE(QString::fromUtf8(result.errors), "ERROR: " + message + '\n');
        QCOMPARE(result.exitStatus, status);
        QVERIFY(!result.output.contains("Everything is Ok"));
        QCOMPARE(QDir(out()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList());
    }

    std::unique_ptr<QTemporaryDir> m_temp;

private slots:
    void init()
    {
        m_temp = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir().mkpath(folder() + "/sub") && QDir().mkpath(out()));
        QVERIFY(writeFile(folder() + "/file", "content"));
    }

    void noArguments()
    {
        checkFailure(runArchiver(KESTRELPACK_FAST_ARCHIVER, {}), 7, "there must be nine arguments");
    }

    void theFolderIsMissing()
    {
        QVERIFY(QDir(folder()).removeRecursively());
        checkFailure(pack(), 1, folder() + "/: cannot be listed - No such file or directory");
    }

    void aFileMayNotBeRead()
    {
        QVERIFY(QFile::setPermissions(folder() + "/file", {}));
        const OrdinaryRights rights({m_temp->path()});
        QVERIFY(rights.areThere());
        checkFailure(pack(), 1, folder() + "/file: cannot be opened - Permission denied");
    }

    void aFolderMayNotBeListed()
    {
        QVERIFY(QFile::setPermissions(folder() + "/sub", {}));
        {
            const OrdinaryRights rights({m_temp->path()});
            QVERIFY(rights.areThere());
            checkFailure(pack(), 1, folder() + "/sub: cannot be listed - Permission denied");
        }
        QFile::setPermissions(folder() + "/sub",
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    void aPipeIsNoFile()
    {
        QCOMPARE(mkfifo(QFile::encodeName(folder() + "/pipe").constData(), 0600), 0);
        checkFailure(pack(), 1, folder() + "/pipe: is neither a file nor a folder");
    }

    void namesThatCannotBeStored_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("no UTF-8") << QByteArray("a\xff");
        QTest::newRow("half a character") << QByteArray("a\xe6\x96");
        QTest::newRow("too long a form") << QByteArray("\xc0\xaf");
        QTest::newRow("half of a surrogate pair") << QByteArray("\xed\xa0\x80");
        QTest::newRow("a backslash") << QByteArray("a\\b");
    }
    void namesThatCannotBeStored()
    {
        QFETCH(QByteArray, name);
        const QByteArray path = QFile::encodeName(folder()) + '/' + name;
        std::FILE *const file = std::fopen(path.constData(), "w");
        QVERIFY(file);
        std::fclose(file);
        const ArchiverResult result = pack();
        QCOMPARE(result.exitStatus, 1);
        QCOMPARE(result.errors, "ERROR: " + path + ": its name cannot be stored\n");
        QVERIFY(!QFile::exists(archivePath()));
        QCOMPARE(std::remove(path.constData()), 0);
    }

    void theArchiveCannotBeCreated()
    {
        QVERIFY(QDir(out()).removeRecursively());
        const ArchiverResult result = pack();
        QVERIFY(QDir().mkpath(out()));
        checkFailure(result, 2, archivePath() + ": cannot be created - No such file or directory");
    }

    void theArchiveIsAFolder()
    {
        QVERIFY(QDir().mkpath(archivePath()));
        const ArchiverResult result = pack();
        QVERIFY(QDir().rmdir(archivePath()));
        checkFailure(result, 2, archivePath() + ": cannot be created - Is a directory");
    }

    // The disk becomes full at the first bytes, in the middle, and at the header.
    void theDiskIsFull_data()
    {
        QTest::addColumn<int>("kibibytes");
        for (const int size : {4, 64, 512, 1024}) {
            QTest::addRow("%d KiB", size) << size;
        }
    }
    void theDiskIsFull()
    {
        QFETCH(int, kibibytes);
        const SmallDisk disk(out(), kibibytes);
        if (!disk.isThere()) {
            QSKIP("only root can mount a small disk");
        }
        for (int i = 0; i < 4; ++i) { // just a mebibyte of noise
            QFile random("/dev/urandom");
            QVERIFY(random.open(QIODevice::ReadOnly));
            QVERIFY(writeFile(folder() + "/noise" + QString::number(i), random.read(1 << 18)));
        }
        checkFailure(pack(), 2, archivePath() + ": cannot be written - No space left on device");
    }

    void anOlderArchiveIsReplaced()
    {
        QVERIFY(writeFile(archivePath(), QByteArray(100000, 'x')));
        QCOMPARE(pack().exitStatus, 0);
        QVERIFY(readFile(archivePath()).startsWith("7z\xbc\xaf\x27\x1c"));
        QVERIFY(QFileInfo(archivePath()).size() < 1000);
    }

    void anInterruptionLeavesNothing_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("Ctrl-C") << SIGINT;
        QTest::newRow("asked to end") << SIGTERM;
    }
    void anInterruptionLeavesNothing()
    {
        QFETCH(int, signal);
        QFile random("/dev/urandom");
        QVERIFY(random.open(QIODevice::ReadOnly));
        const QByteArray noise = random.read(1 << 20);
        for (int i = 0; i < 100; ++i) {
            QVERIFY(writeFile(folder() + "/noise" + QString::number(i), noise));
        }
        QProcess process;
        process.start(builtFile(KESTRELPACK_FAST_ARCHIVER),
                      archiverArguments(archivePath(), folder(), "ZSTD:x=22"));
        QByteArray output;
        while (!output.contains("+") && process.waitForReadyRead(patience)) { // it packs a file
            output += process.readAllStandardOutput();
        }
        QVERIFY(output.contains("+"));
        QCOMPARE(kill(static_cast<pid_t>(process.processId()), signal), 0);
        QVERIFY(process.waitForFinished(patience));
        checkFailure({process.exitCode(), output + process.readAllStandardOutput(),
                      process.readAllStandardError()},
                     255, "Break signaled");
    }
};

QTEST_GUILESS_MAIN(TestFastArchiverFailures)
#include "tst_fastarchiver_failures.moc"
