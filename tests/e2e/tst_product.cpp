// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/e2e/productrun.h"
#include "tests/e2e/sourcefolder.h"
#include "tests/fakes/privatetemp.h"
#include "tests/support/builtfile.h"

#include <QTest>

// Packs folders with the terminal program and starts the produced files under Wine.
class TestProduct : public QObject
{
    Q_OBJECT

private:
    static ProgramRun pack(const QStringList &arguments)
    {
        return runProgram(builtFile(KESTRELPACK_CLI), arguments);
    }

private slots:
    void theExampleGetsItsArgumentsAndPassesItsExitCodeOn()
    {
        PrivateTemp temp;
        const ProgramRun packed
            = pack({"-o", temp.filePath("out"), builtFile(KESTRELPACK_HELLO_FOLDER)});
        QVERIFY2(packed.exitCode == 0, qPrintable(packed.errors));
        const ProgramRun started = startProduct(temp.filePath("out/hello.exe"),
                                                {"one", "two three", "", "--exit", "42"});
        QCOMPARE(started.exitCode, 42);
        QVERIFY2(started.output.contains("Argument 1: one\r\nArgument 2: two three\r\n"
                                         "Argument 3: \r\nArgument 4: --exit\r\n"),
                 qPrintable(started.output));
        QVERIFY2(started.output.contains("This line comes from greeting.txt"),
                 qPrintable(started.output));
        QCOMPARE(unpackedFolders(), QStringList());
    }

    // Two programs, a setup.bat, names with blanks, Chinese and emoji, an empty file, an empty
    // folder, nested folders, a read-only file, and a file that is larger than the window.
    void everyFileOfAnAwkwardFolderArrivesByteForByte_data()
    {
        QTest::addColumn<QString>("method");
        QTest::newRow("LZMA") << "LZMA";
        QTest::newRow("LZMA2") << "LZMA2";
    }
    void everyFileOfAnAwkwardFolderArrivesByteForByte()
    {
        QFETCH(QString, method);
        PrivateTemp temp;
        SourceFolder source(temp.filePath("源 文件夹"));
        source.addProgram("主 程序 🚀.exe", builtFile(KESTRELPACK_CHECKER));
        source.addProgram("another.exe", builtFile(KESTRELPACK_HELLO_EXE));
        source.addFile("setup.bat", "exit 99\r\n");
        source.addFile("blank in name.txt", "blank");
        source.addFile("中文/说明 文件.txt", "说明");
        source.addFile("emoji 🎉.bin", QByteArray(70000, '\x5a'));
        source.addFile("empty", {});
        source.addFile("a/b/c/d/deep.txt", "deep");
        source.addFile("read only.txt", "read only");
        QVERIFY(QFile::setPermissions(source.filePath("read only.txt"), QFile::ReadOwner));
        source.addFolder("empty folder");
        source.addLargeFile("large.bin", 40'000'000);
        source.writeManifest();

        const ProgramRun packed = pack({"-m", "主 程序 🚀.exe", "--cwd", "app", "-l", "fastest",
                                        "-c", method, "-o", temp.filePath("out"), source.path()});
        QVERIFY2(packed.exitCode == 0, qPrintable(packed.errors));
        const ProgramRun started = startProduct(temp.filePath("out/主 程序 🚀.exe"));
        QVERIFY2(started.exitCode == 7, qPrintable(started.output + started.errors));
        QCOMPARE(unpackedFolders(), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestProduct)
#include "tst_product.moc"
