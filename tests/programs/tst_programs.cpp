// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/resource-editor/editorrun.h"
#include "tests/programs/programreader.h"
#include "tests/support/builtfile.h"
#include "tests/support/testfiles.h"

#include <QTest>

namespace {

constexpr int sizeOfLoadConfig = 0x140;
constexpr int dependentLoadFlags = 0x4e; // offset in the load configuration

} // namespace

// What the headers of our Windows programs say. A native build has only the modules.
class TestPrograms : public QObject
{
    Q_OBJECT

private:
    static void addPrograms()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("system"); // the oldest version of Windows
        QTest::newRow("module") << builtFile(KESTRELPACK_MODULE) << "6.1";
        QTest::newRow("full module") << builtFile(KESTRELPACK_FULL_MODULE) << "6.1";
#ifdef Q_OS_WIN
        QTest::newRow("window") << builtFile(KESTRELPACK_WINDOW) << "10.0";
        QTest::newRow("terminal program") << builtFile(KESTRELPACK_CLI) << "10.0";
        QTest::newRow("archiver") << builtFile(KESTRELPACK_ARCHIVER) << "10.0";
        QTest::newRow("archiver for fast starts") << builtFile(KESTRELPACK_FAST_ARCHIVER) << "10.0";
        QTest::newRow("resource editor") << builtFile(KESTRELPACK_RESOURCE_EDITOR) << "10.0";
#endif
    }

    static ProgramReader program()
    {
        QFETCH(QString, file);
        return ProgramReader(readFile(file));
    }

private slots:
    void header_data()
    {
        addPrograms();
    }
    void header()
    {
        const ProgramReader header = program();
        QVERIFY(header.is64Bit());
        constexpr quint16 removableRunFromSwap = 0x400;
        constexpr quint16 netRunFromSwap = 0x800;
        QVERIFY(header.characteristics() & removableRunFromSwap);
        QVERIFY(header.characteristics() & netRunFromSwap);
        QCOMPARE(header.dllCharacteristics(), quint16(0x160)); // high entropy, dynamic base, NX
        QCOMPARE(header.checkSum(), header.computedCheckSum());
        QTEST(header.systemVersion(), "system");
        QTEST(header.subsystemVersion(), "system");
        // A time in the past, and not the first second of 1970.
        QVERIFY(header.timeStamp() >= 0x40000000 && header.timeStamp() < 0x60000000);
    }

    // The linker makes the same check sum.
    void theTestsOwnCheckSumIsRight()
    {
        const ProgramReader header(readFile(builtFile(KESTRELPACK_HELLO_EXE)));
        QVERIFY(header.checkSum() != 0);
        QCOMPARE(header.computedCheckSum(), header.checkSum());
    }

    void differentProgramsHaveDifferentStamps()
    {
#ifdef Q_OS_WIN
        QVERIFY(ProgramReader(readFile(builtFile(KESTRELPACK_CLI))).timeStamp()
                != ProgramReader(readFile(builtFile(KESTRELPACK_WINDOW))).timeStamp());
#else
        QVERIFY(ProgramReader(readFile(builtFile(KESTRELPACK_MODULE))).timeStamp()
                != ProgramReader(readFile(builtFile(KESTRELPACK_HELLO_EXE))).timeStamp());
#endif
    }

    void resources_data()
    {
        addPrograms();
    }
    void resources()
    {
        QFETCH(QString, file);
        const QByteArray content = readFile(file);
        for (const char *text : {"asInvoker", "{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}",
                                 "<longPathAware ", ">true</longPathAware>"}) {
            QVERIFY2(content.contains(text), text);
        }
        // A module is somebody else's program from the day it is packed, and reads no text but
        // UTF-16.
        const bool isOurs = !QByteArray(QTest::currentDataTag()).endsWith("module");
        QCOMPARE(content.contains(">UTF-8</activeCodePage>"), isOurs);
        const QString companyName = "CompanyName";
        QCOMPARE(content.contains(QByteArray(reinterpret_cast<const char *>(companyName.utf16()),
                                             2 * companyName.size())),
                 isOurs);
    }

    // Libraries come from the system's folder only. The program claims nothing else.
    void loadConfig_data()
    {
        addPrograms();
    }
    void loadConfig()
    {
        const ProgramReader header = program();
        QByteArray expected(sizeOfLoadConfig, '\0');
        expected.replace(0, 2, QByteArray("\x40\x01", 2));
        expected.replace(dependentLoadFlags, 2, QByteArray("\x00\x08", 2));
        QCOMPARE(header.directory(10).size, quint32(sizeOfLoadConfig));
        QCOMPARE(header.directory(10).address % 8, 0U);
        QCOMPARE(header.loadConfig().toHex(), expected.toHex());
    }

    // SystemFunction036 of advapi32.dll lies in a library that is looked for beside the program.
    void imports_data()
    {
        addPrograms();
    }
    void imports()
    {
        const ProgramReader header = program();
        const QMap<QString, QStringList> imports = header.imports();
        QVERIFY(imports.value("kernel32.dll").contains("CloseHandle"));
        for (const QStringList &functions : imports) {
            for (const QString &function : functions) {
                QVERIFY2(!function.startsWith("SystemFunction"), qPrintable(function));
            }
        }
        QCOMPARE(header.directory(13).address, 0U); // no delayed imports
        QCOMPARE(header.directory(11).address, 0U); // no bound imports
    }

    void anIconLeavesTheLoadConfigIntact()
    {
        const QByteArray module = readFile(builtFile(KESTRELPACK_MODULE));
        const EditorFiles files(module + "block and archive", {16, 32, 48, 256});
        QCOMPARE(files.remove().status, 0);
        QCOMPARE(files.add().status, 0);
        const ProgramReader before(module);
        const ProgramReader after(files.content());
        QVERIFY(files.content().size() > module.size() + 256 * 256);
        QVERIFY(!after.loadConfig().isEmpty());
        QCOMPARE(after.loadConfig(), before.loadConfig());
        QCOMPARE(after.directory(10).address, before.directory(10).address);
        QCOMPARE(after.directory(10).size, before.directory(10).size);
        QCOMPARE(after.characteristics(), before.characteristics());
        QCOMPARE(after.timeStamp(), before.timeStamp());
        QCOMPARE(after.checkSum(), 0U);
    }
};

QTEST_APPLESS_MAIN(TestPrograms)
#include "tst_programs.moc"
