// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/outputassembly.h"

#include "packaging/blockwriter.h"
#include "tests/fakes/fakeplatform.h"
#include "tests/fakes/privatetemp.h"
#include "tests/packaging/testreport.h"
#include "tests/support/knownpermissions.h"
#include "tests/support/onwindows.h"
#include "tests/support/testfiles.h"

#include <QTest>

namespace {

constexpr qint64 mebibyte = 1048576;

QByteArray pattern(qint64 size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (qint64 i = 0; i < size; ++i) {
        bytes[i] = static_cast<char>((i * 31 + i / 4093) & 0xFF);
    }
    return bytes;
}

} // namespace

class TestOutputAssembly : public QObject
{
    Q_OBJECT

private:
    static PackagingJob jobIn(const PrivateTemp &temp, const QString &mainExeName = "my.tool.exe")
    {
        return {"/s", temp.filePath("temp.7z"), temp.path(), mainExeName, {}, "5", "LZMA", "16M"};
    }

    static QStringList blockEvents(const QString &block)
    {
        return {QStringLiteral("log 配置数据写入成功，大小: %1 字节").arg(block.toUtf8().size()),
                "log 配置内容:\n" + block};
    }

private slots:
    void moduleBlockAndArchiveOneBehindTheOther_data()
    {
        QTest::addColumn<qint64>("archiveSize");
        QTest::addColumn<QList<int>>("percentages");
        QTest::newRow("an empty archive gives no progress") << qint64(0) << QList<int>{};
        QTest::newRow("one byte") << qint64(1) << QList<int>{100};
        QTest::newRow("exactly one chunk") << mebibyte << QList<int>{100};
        QTest::newRow("one chunk and a byte") << mebibyte + 1 << QList<int>{99, 100};
        QTest::newRow("three chunks and a half, truncated downwards")
            << 3 * mebibyte + mebibyte / 2 << QList<int>{64, 78, 92, 100};
    }
    void moduleBlockAndArchiveOneBehindTheOther()
    {
        QFETCH(qint64, archiveSize);
        QFETCH(QList<int>, percentages);
        PrivateTemp temp;
        const QByteArray module = pattern(1000);
        const QByteArray archive = pattern(archiveSize);
        temp.plantModule(module);
        QVERIFY(writeFile(temp.filePath("temp.7z"), archive));

        TestReport report;
        QVERIFY(assembleOutput(jobIn(temp), report.report()));

        const QString block = configurationBlock("my", "my.tool.exe");
        QStringList expected{"log SFX模块写入成功"};
        expected << blockEvents(block)
                 << QStringLiteral("log 准备写入压缩包数据，大小: %1 字节").arg(archiveSize);
        for (const int percentage : percentages) {
            expected << QStringLiteral("progress %1").arg(percentage);
        }
        expected << QStringLiteral("log 压缩包数据写入完成，共写入: %1 字节").arg(archiveSize);
        QCOMPARE(report.events, expected);
        QCOMPARE(readFile(temp.filePath("my.exe")), module + block.toUtf8() + archive);
        QCOMPARE(readFile(temp.filePath("temp.7z")), archive);
    }

    void aLongerOutputOfTheSameNameIsOverwritten()
    {
        PrivateTemp temp;
        temp.plantModule("module");
        QVERIFY(writeFile(temp.filePath("temp.7z"), "archive"));
        QVERIFY(writeFile(temp.filePath("a.exe"), pattern(100000)));
        TestReport report;
        QVERIFY(assembleOutput(jobIn(temp, "a.exe"), report.report()));
        QCOMPARE(readFile(temp.filePath("a.exe")),
                 "module" + configurationBlock("a", "a.exe").toUtf8() + "archive");
    }

    void withoutAModuleTheBundlesIsCopied()
    {
        PrivateTemp temp;
        QVERIFY(writeFile(temp.filePath("temp.7z"), "archive"));
        TestReport report;
        QVERIFY(assembleOutput(jobIn(temp), report.report()));
        const QByteArray module = readFile(":/resources/7zS2.sfx");
        QVERIFY(module.startsWith("MZ"));
        QCOMPARE(readFile(temp.filePath("7zS2.sfx")), module);
        QVERIFY(readFile(temp.filePath("my.exe")).startsWith(module + ";!@Install@!UTF-8!\n"));
        constexpr auto owner = QFile::WriteOwner | QFile::ExeOwner;
        QCOMPARE(known(QFile::permissions(temp.filePath("7zS2.sfx")) & owner), known(owner));
    }

    void aModuleThatCannotBeCopiedFails()
    {
        if (onWindows) {
            QSKIP(PrivateTemp::cannotBlockCopies);
        }
        PrivateTemp temp;
        temp.blockCopyTo("7zS2.sfx");
        TestReport report;
        QVERIFY(!assembleOutput(jobIn(temp), report.report()));
        QCOMPARE(report.events, QStringList{"log 错误：无法复制SFX模块"});
    }

    void anOutputThatCannotBeCreatedFails()
    {
        PrivateTemp temp;
        temp.plantModule("module");
        PackagingJob job = jobIn(temp);
        job.outputDir = temp.filePath("missing");
        TestReport report;
        QVERIFY(!assembleOutput(job, report.report()));
        QCOMPARE(report.events,
                 QStringList{"log 错误：无法创建输出文件: " + temp.filePath("missing/my.exe")});
    }

    void aModuleThatCannotBeReadFailsAndLeavesAnEmptyOutput()
    {
        PrivateTemp temp;
        QVERIFY(QDir(temp.path()).mkpath("7zS2.sfx")); // exists, but is not a file
        TestReport report;
        QVERIFY(!assembleOutput(jobIn(temp), report.report()));
        QCOMPARE(report.events, QStringList{"log 错误：无法读取SFX模块"});
        QCOMPARE(QFileInfo(temp.filePath("my.exe")).size(), 0);
        QVERIFY(QFile::exists(temp.filePath("my.exe")));
    }

    void aModuleThatThePlatformRefusesIsNotHandedOn()
    {
        PrivateTemp temp;
        FakePlatform platform;
        platform.refusal = "somebody else's";
        platform.refusedPath = temp.filePath("7zS2.sfx");
        temp.plantModule("planted");
        TestReport report;
        QVERIFY(!assembleOutput(jobIn(temp), report.report()));
        QCOMPARE(report.events, QStringList{"log 错误：无法读取SFX模块"});
        QCOMPARE(QFileInfo(temp.filePath("my.exe")).size(), 0);
    }

    void anArchiveThatIsMissingFailsAndLeavesModuleAndBlock()
    {
        PrivateTemp temp;
        temp.plantModule("module");
        TestReport report;
        QVERIFY(!assembleOutput(jobIn(temp), report.report()));
        const QString block = configurationBlock("my", "my.tool.exe");
        QCOMPARE(report.events,
                 QStringList{"log SFX模块写入成功"} + blockEvents(block)
                     + QStringList{"log 错误：无法读取压缩包文件"});
        QCOMPARE(readFile(temp.filePath("my.exe")), "module" + block.toUtf8());
    }

#ifdef Q_OS_LINUX
    // Writes are not checked; only the total size shows failed writes. The full device accepts no
    // bytes, and each failed write counts as minus one.
    void aFullDiskShowsInTheTotalOnly()
    {
        PrivateTemp temp;
        temp.plantModule("module");
        QVERIFY(writeFile(temp.filePath("temp.7z"), pattern(2 * mebibyte)));
        QVERIFY(QFile::link("/dev/full", temp.filePath("my.exe")));
        TestReport report;
        QVERIFY(assembleOutput(jobIn(temp), report.report()));
        QCOMPARE(report.events.mid(report.events.size() - 3),
                 QStringList(
                     {"progress 50", "progress 50", "log 压缩包数据写入完成，共写入: -2 字节"}));
    }
#endif
};

QTEST_GUILESS_MAIN(TestOutputAssembly)
#include "tst_outputassembly.moc"
