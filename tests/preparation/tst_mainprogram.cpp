// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/mainprogram.h"

#include "helpers/pe/programedit.h"
#include "preparation/requestedrights.h"
#include "tests/helpers/pe/nativepathof.h"
#include "tests/helpers/pe/petest.h"
#include "tests/support/testfiles.h"

#include <QTemporaryDir>
#include <QTest>

using pe::ProgramHeader;
using Format = ProgramHeader::Format;
Q_DECLARE_METATYPE(ProgramHeader)

namespace {

// An ordinary program: 64 bits, with windows.
ProgramHeader programHeader()
{
    ProgramHeader header;
    header.format = Format::Pe;
    header.machine = pe::machineX64;
    header.subsystem = pe::subsystemWindows;
    header.characteristics = 0x22;
    return header;
}

ProgramHeader with(std::uint16_t machine, std::uint16_t subsystem)
{
    ProgramHeader header = programHeader();
    header.machine = machine;
    header.subsystem = subsystem;
    return header;
}

ProgramHeader dotNet(std::uint32_t flags)
{
    ProgramHeader header = with(pe::machineX86, pe::subsystemWindows);
    header.clrFlags = flags;
    return header;
}

ProgramHeader ofFormat(Format format)
{
    ProgramHeader header;
    header.format = format;
    return header;
}

ProgramHeader withCharacteristics(std::uint16_t flags)
{
    ProgramHeader header = programHeader();
    header.characteristics = flags;
    return header;
}

} // namespace

class TestMainProgram : public QObject
{
    Q_OBJECT

private slots:
    void startability_data();
    void startability();
    void kind();
    void reading();
    void aFileThatIsNoProgramIsRead();
    void filesThatCannotBeRead();
    void askingForRights_data();
    void askingForRights();
};

void TestMainProgram::startability_data()
{
    QTest::addColumn<ProgramHeader>("header");
    QTest::addColumn<bool>("canStart");
    QTest::addColumn<QString>("part"); // of the remark; empty: there is none
    const auto row
        = [](const char *title, const ProgramHeader &header, bool canStart, const char *part) {
              QTest::newRow(title) << header << canStart << QString(part);
          };
    row("x64, windows", programHeader(), true, "");
    row("x64, console", with(pe::machineX64, pe::subsystemConsole), true, "");
    row("32 bits", with(pe::machineX86, pe::subsystemConsole), true, "32-bit program");
    row(".NET, any processor", dotNet(0x1), true, "any processor");
    row(".NET, any processor, rather 32 bits", dotNet(0x20003), true, "32-bit program");
    row(".NET, 32 bits", dotNet(0x3), true, "32-bit program");
    row(".NET with machine code", dotNet(0x0), true, "32-bit program");
    row("ARM64", with(pe::machineArm64, pe::subsystemWindows), true, "Windows 11 on ARM only");
    row("32-bit ARM", with(pe::machineArm, pe::subsystemWindows), true, "before version 24H2");
    row("Itanium", with(0x200, pe::subsystemWindows), false, "no longer supports (0x200)");
    row("no machine", with(0, pe::subsystemWindows), false, "(0x0)");
    row("a driver", with(pe::machineX64, 1), false, "driver");
    row("OS/2", with(pe::machineX86, 5), false, "OS/2");
    row("POSIX", with(pe::machineX86, 7), false, "POSIX");
    row("Windows CE", with(pe::machineArm, 9), false, "Windows CE");
    row("an EFI application", with(pe::machineX64, 10), false, "(EFI)");
    row("an EFI image in ROM", with(pe::machineX64, 13), false, "(EFI)");
    row("no subsystem", with(pe::machineX64, 0), false, "the subsystem 0");
    row("a boot application", with(pe::machineX64, 16), false, "the subsystem 16");
    row("a library", withCharacteristics(0x2022), false, "(DLL)");
    row("not linked completely", withCharacteristics(0x20), false, "not linked");
    row("16 bits", ofFormat(Format::SixteenBit), false, "16-bit");
    row("DOS", ofFormat(Format::Dos), false, "DOS");
    row("no program", ofFormat(Format::Unknown), false, "not a Windows program");
}

void TestMainProgram::startability()
{
    QFETCH(const ProgramHeader, header);
    QFETCH(const QString, part);
    const Startability result = startabilityOf(header);
    QTEST(result.canStart, "canStart");
    QCOMPARE(result.remark.has_value(), !part.isEmpty());
    if (result.remark) {
        const QString remark = textOf(*result.remark);
        QVERIFY2(remark.contains(part), qPrintable(remark));
        QVERIFY(!remark.contains('%'));
        QVERIFY(!remark.endsWith('.'));
    }
}

void TestMainProgram::kind()
{
    QCOMPARE(kindOf(with(pe::machineX64, pe::subsystemConsole)), ProgramKind::Console);
    QCOMPARE(kindOf(with(pe::machineX64, pe::subsystemWindows)), ProgramKind::Windows);
}

// The made program's version resource is no such structure.
void TestMainProgram::reading()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath("程序.exe");
    QVERIFY(writeFile(path, petest::makeProgram({})));
    const auto read = readMainProgram(path);
    QVERIFY(std::holds_alternative<MainProgram>(read));
    const auto &program = std::get<MainProgram>(read);
    QCOMPARE(program.header.machine, pe::machineX64);
    QVERIFY(program.identity.empty());
    QVERIFY(program.hasDamagedIdentity);

    QVERIFY(writeFile(path, petest::makeProgram({.resources = false, .icons = false})));
    const auto bare = readMainProgram(path);
    QVERIFY(!std::get<MainProgram>(bare).hasDamagedIdentity);
}

void TestMainProgram::aFileThatIsNoProgramIsRead()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath("a.exe");
    QVERIFY(writeFile(path, "@echo off\r\n"));
    const auto read = readMainProgram(path);
    QVERIFY(std::holds_alternative<MainProgram>(read));
    QVERIFY(!startabilityOf(std::get<MainProgram>(read).header).canStart);
}

void TestMainProgram::filesThatCannotBeRead()
{
    const QTemporaryDir dir;
    const auto missing = readMainProgram(dir.filePath("missing.exe"));
    QVERIFY(textOf(std::get<Message>(missing)).startsWith("it cannot be read: "));
    const QString path = dir.filePath("damaged.exe");
    QVERIFY(writeFile(path, petest::makeProgram({}).left(0x180)));
    const auto damaged = readMainProgram(path);
    QVERIFY(textOf(std::get<Message>(damaged)).startsWith("it is damaged: "));
}

void TestMainProgram::askingForRights_data()
{
    QTest::addColumn<QByteArray>("manifest");
    QTest::addColumn<bool>("asks");
    const auto row = [](const char *name, const QByteArray &attributes, bool asks) {
        QTest::newRow(name)
            << "<?xml version='1.0' encoding='UTF-8' standalone='yes'?>\r\n"
               "<assembly xmlns='urn:schemas-microsoft-com:asm.v1' manifestVersion='1.0'>"
               "<trustInfo xmlns='urn:schemas-microsoft-com:asm.v3'><security><requestedPrivileges>"
               "<requestedExecutionLevel "
                + attributes + "/></requestedPrivileges></security></trustInfo></assembly>\r\n"
            << asks;
    };
    row("as the caller", "level='asInvoker' uiAccess='false'", false);
    row("as an administrator", "level='requireAdministrator' uiAccess='false'", true);
    row("as an administrator, in other capitals", "level='RequireAdministrator'", true);
    row("with the highest rights", "level='highestAvailable' uiAccess='false'", true);
    row("with access to other windows", "level='asInvoker' uiAccess='true'", true);
    row("no level", "", false);
    QTest::newRow("no manifest") << QByteArray() << false;
    QTest::newRow("no XML") << QByteArray("requireAdministrator") << false;
    QTest::newRow("a manifest without a level")
        << QByteArray("<assembly xmlns='urn:schemas-microsoft-com:asm.v1'/>") << false;
}

void TestMainProgram::askingForRights()
{
    QFETCH(const QByteArray, manifest);
    QFETCH(const bool, asks);
    QCOMPARE(asksForRights(manifest), asks);
    const QTemporaryDir dir;
    const QString path = dir.filePath("a.exe");
    QVERIFY(writeFile(path, petest::makeProgram({.resources = false})));
    pe::ProgramEdit edit;
    edit.resources.push_back({pe::ResourceKey{std::nullopt, pe::manifestType},
                              pe::ResourceKey{std::nullopt, 1}, 0x409,
                              pe::Bytes(manifest.begin(), manifest.end())});
    QVERIFY(!pe::editProgram(nativePathOf(path), nativePathOf(path), edit).hasError());
    QCOMPARE(std::get<MainProgram>(readMainProgram(path)).asksForRights, asks);
}

QTEST_APPLESS_MAIN(TestMainProgram)

#include "tst_mainprogram.moc"
