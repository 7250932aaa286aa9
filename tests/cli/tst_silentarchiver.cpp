// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/cli/clirun.h"

#include <QTest>

// The archiver is stopped in the middle. After 30 seconds the engine goes on as if it had ended.
class TestSilentArchiver : public QObject
{
    Q_OBJECT

private slots:
    void theJobFailsAndTheOlderOutputStays()
    {
        CliSurroundings s;
        s.write("output/my.exe", "the older one");
        s.write("part.7z", archiveOf(3000000).left(800000));
        s.temp.plantArchiver("print 28%\ncopy " + s.path("part.7z").toUtf8()
                             + " @3\nsleep 600000\n");
        const CliResult result = s.run(s.arguments());
        QVERIFY2(result.errors.contains("kestrelpack-cli: the archiver did not finish: the archive "
                                        "is incomplete"),
                 qPrintable(result.errors));
        QCOMPARE(result.exitStatus, 1);
        QCOMPARE(s.read("output/my.exe"), QByteArray("the older one"));
        QCOMPARE(s.namesIn("output"), QStringList("my.exe"));
        QCOMPARE(s.temp.names(), QStringList({"7zS2.sfx", "7zr.exe", "ResourceHacker.exe"}));
    }
};

QTEST_GUILESS_MAIN(TestSilentArchiver)
#include "tst_silentarchiver.moc"
