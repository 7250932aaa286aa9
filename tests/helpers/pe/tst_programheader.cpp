// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/programheader.h"

#include "tests/helpers/pe/nativepathof.h"
#include "tests/helpers/pe/petest.h"
#include "tests/support/testfiles.h"

#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

using Format = pe::ProgramHeader::Format;
Q_DECLARE_METATYPE(Format)

namespace {

// Where makeProgram() puts the optional header of a 64-bit program and its data directories.
constexpr qsizetype optionalHeader = 0x98;
constexpr qsizetype directories = optionalHeader + 112;

template <typename Number>
void put(QByteArray &bytes, qsizetype offset, Number value)
{
    qToLittleEndian(value, bytes.data() + offset);
}

// A DOS program whose header points to another one.
QByteArray dosProgram(const QByteArray &second)
{
    QByteArray bytes = "MZ" + QByteArray(62, '\0');
    put<quint32>(bytes, 60, 64);
    return bytes + second + QByteArray(100, '\0');
}

} // namespace

class TestProgramHeader : public QObject
{
    Q_OBJECT

private slots:
    void formats_data();
    void formats();
    void numbers();
    void dotNet_data();
    void dotNet();
    void damaged();
    void names();

private:
    pe::Result<pe::ProgramHeader> headerOf(const QByteArray &program) const
    {
        const QString path = m_dir.filePath("a.exe");
        if (!writeFile(path, program)) {
            qFatal("the program could not be written");
        }
        const auto file = pe::File::open(nativePathOf(path), pe::File::Access::Read);
        return pe::programHeaderOf(file.value());
    }

    QTemporaryDir m_dir;
};

void TestProgramHeader::formats_data()
{
    QTest::addColumn<QByteArray>("program");
    QTest::addColumn<Format>("format");
    QTest::newRow("nothing") << QByteArray() << Format::Unknown;
    QTest::newRow("one letter") << QByteArray("M") << Format::Unknown;
    QTest::newRow("a script") << QByteArray("#!/bin/sh\necho hello\n") << Format::Unknown;
    QTest::newRow("a program of Linux") << QByteArray("\x7f"
                                                      "ELF")
                                        << Format::Unknown;
    QTest::newRow("a short DOS program") << QByteArray("MZ\x90") << Format::Dos;
    QTest::newRow("a DOS program") << dosProgram({}) << Format::Dos;
    QByteArray far = dosProgram({});
    put<quint32>(far, 60, 0xfffffff0);
    QTest::newRow("a second header outside the file") << far << Format::Dos;
    QTest::newRow("16-bit Windows") << dosProgram("NE") << Format::SixteenBit;
    QTest::newRow("OS/2") << dosProgram("LX") << Format::SixteenBit;
    QTest::newRow("32-bit Windows") << petest::makeProgram({.pe32Plus = false}) << Format::Pe;
    QTest::newRow("64-bit Windows") << petest::makeProgram({}) << Format::Pe;
}

void TestProgramHeader::formats()
{
    QFETCH(const QByteArray, program);
    const auto header = headerOf(program);
    QVERIFY(!header.hasError());
    QTEST(header.value().format, "format");
}

void TestProgramHeader::numbers()
{
    QByteArray program = petest::makeProgram({});
    put<quint16>(program, 0x84, 0xaa64);
    put<quint16>(program, 0x96, 0x2022);
    put<quint16>(program, optionalHeader + 68, 3);
    const auto header = headerOf(program);
    QVERIFY(!header.hasError());
    QCOMPARE(header.value().machine, pe::machineArm64);
    QCOMPARE(header.value().characteristics, 0x2022);
    QCOMPARE(header.value().subsystem, pe::subsystemConsole);
    QVERIFY(!header.value().clrFlags);
}

void TestProgramHeader::dotNet_data()
{
    QTest::addColumn<quint32>("address");
    QTest::addColumn<quint32>("size");
    QTest::addColumn<bool>("hasFlags");
    QTest::newRow("in the code") << 0x1000U << 72U << true;
    QTest::newRow("outside all sections") << 0x900000U << 72U << false;
    QTest::newRow("too short") << 0x1000U << 16U << false;
    QTest::newRow("none") << 0U << 0U << false;
}

void TestProgramHeader::dotNet()
{
    QFETCH(const quint32, address);
    QFETCH(const quint32, size);
    QByteArray program = petest::makeProgram({});
    put(program, directories + 8 * 14, address);
    put(program, directories + 8 * 14 + 4, size);
    put<quint32>(program, 0x400 + 16, 0x20003); // the code begins there
    const auto header = headerOf(program);
    QVERIFY(!header.hasError());
    QTEST(header.value().clrFlags.has_value(), "hasFlags");
    QVERIFY(!header.value().clrFlags || *header.value().clrFlags == 0x20003);
}

void TestProgramHeader::damaged()
{
    QVERIFY(headerOf(petest::makeProgram({}).left(0x180)).hasError());
}

void TestProgramHeader::names()
{
    QCOMPARE(pe::machineName(0x8664), std::string("x64"));
    QCOMPARE(pe::machineName(0xaa64), std::string("ARM64"));
    QCOMPARE(pe::machineName(0x1c0), std::string("0x1c0"));
    QCOMPARE(pe::subsystemName(2), std::string("windows"));
    QCOMPARE(pe::subsystemName(3), std::string("console"));
    QCOMPARE(pe::subsystemName(10), std::string("10"));
}

QTEST_APPLESS_MAIN(TestProgramHeader)

#include "tst_programheader.moc"
