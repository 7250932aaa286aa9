// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/archivercommand.h"

#include "packaging/compressionoptions.h"
#include "tests/fakes/fakeplatform.h"

#include <QDir>
#include <QTest>

namespace {

PackagingJob exampleJob()
{
    return {"C:/my app", "C:/temp/x/temp.7z", "D:/out", "my app.exe", {}, "5", "LZMA", "16M"};
}

} // namespace

class TestArchiverCommand : public QObject
{
    Q_OBJECT

private slots:
    void nineArgumentsWithBackslashesWhereThePlatformWantsThem()
    {
        FakePlatform windows;
        windows.usesBackslashes = true;
        const QStringList expected{
            "a",     "-t7z", R"(C:\temp\x\temp.7z)", R"(C:\my app\*)", "-r", "-mx=5", "-m0=LZMA",
            "-bsp1", "-ssc"};
        QCOMPARE(archiverArguments(exampleJob()), expected);
    }

    void pathsKeepTheirSlashesWhereThePlatformWantsThem()
    {
        const QStringList arguments = archiverArguments(exampleJob());
        QCOMPARE(arguments.at(2), QDir::toNativeSeparators("C:/temp/x/temp.7z"));
        QCOMPARE(arguments.at(3), QDir::toNativeSeparators("C:/my app/*"));
    }

    void everyListedLevelAndMethodReachesItsSwitch()
    {
        PackagingJob job = exampleJob();
        QStringList levels;
        for (int index = 0; index < 6; ++index) {
            job.compressionLevel = compressionLevelText(index);
            levels << archiverArguments(job).at(5);
        }
        QCOMPARE(levels, QStringList({"-mx=0", "-mx=1", "-mx=3", "-mx=5", "-mx=7", "-mx=9"}));
        job.compressionMethod = compressionMethodText(1);
        QCOMPARE(archiverArguments(job).at(6), "-m0=LZMA2");
    }

    void nothingSelectedMeansTheDefaults()
    {
        PackagingJob job = exampleJob();
        job.compressionLevel = compressionLevelText(-1);
        job.compressionMethod = compressionMethodText(-1);
        job.dictionarySize = dictionarySizeText(-1);
        QCOMPARE(archiverArguments(job), archiverArguments(exampleJob()));
    }

    void theDictionarySizeIsIgnored_data()
    {
        QTest::addColumn<QString>("dictionarySize");
        QTest::newRow("the smallest") << dictionarySizeText(0);
        QTest::newRow("the largest") << dictionarySizeText(4);
        QTest::newRow("empty") << QString();
        QTest::newRow("nonsense") << "-mx=9 ";
    }
    void theDictionarySizeIsIgnored()
    {
        QFETCH(QString, dictionarySize);
        PackagingJob job = exampleJob();
        job.dictionarySize = dictionarySize;
        QCOMPARE(archiverArguments(job), archiverArguments(exampleJob()));
    }
};

QTEST_APPLESS_MAIN(TestArchiverCommand)
#include "tst_archivercommand.moc"
