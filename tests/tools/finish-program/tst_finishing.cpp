// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tools/finish-program/finishing.h"

#include "tests/helpers/pe/nativepathof.h"
#include "tests/helpers/pe/petest.h"
#include "tests/programs/programreader.h"
#include "tests/support/testfiles.h"
#include "tools/finish-program/loadconfig.h"

#include <QTemporaryDir>
#include <QTest>

namespace {

QByteArray loadConfigBytes(quint32 timeStamp = unfinishedTimeStamp)
{
    const LoadConfig config{.timeStamp = timeStamp};
    return QByteArray(reinterpret_cast<const char *>(&config), sizeof config);
}

// The load configuration takes the place of code here.
QByteArray programWithLoadConfig()
{
    QByteArray program = petest::makeProgram({.overlay = 1001});
    const petest::SectionRow code = petest::lookAt(program).sections.constFirst();
    return program.replace(code.rawPointer + 16, sizeof(LoadConfig), loadConfigBytes());
}

} // namespace

class TestFinishing : public QObject
{
    Q_OBJECT

private:
    // Returns what is wrong; empty after a success.
    QString finish(const QByteArray &program)
    {
        if (!writeFile(m_path, program)) {
            return "the file cannot be written";
        }
        auto file = pe::File::open(nativePathOf(m_path), pe::File::Access::Edit);
        const auto finished = finishProgram(file.value());
        return finished.hasError() ? QString::fromStdString(finished.error().what) : QString();
    }

    QTemporaryDir m_folder;
    const QString m_path = m_folder.filePath("program.exe");

private slots:
    void theHeaderIsCompleted()
    {
        const QByteArray program = programWithLoadConfig();
        QCOMPARE(finish(program), QString());
        const QByteArray finished = readFile(m_path);
        const ProgramReader header(finished);
        QCOMPARE(header.loadConfig(), loadConfigBytes(0));
        QCOMPARE(header.directory(10).size, quint32(sizeof(LoadConfig)));
        QCOMPARE(header.characteristics(), ProgramReader(program).characteristics() | 0xc00);
        QCOMPARE(header.checkSum(), header.computedCheckSum());
        QVERIFY(header.timeStamp() >= 0x40000000 && header.timeStamp() < 0x60000000);
        // Nothing else changes after the header.
        QByteArray expected = program;
        expected.replace(loadConfigBytes(), loadConfigBytes(0));
        QCOMPARE(finished.mid(0x400), expected.mid(0x400));
    }

    // As in a program whose bundle contains finished programs.
    void finishedProgramsInsideAreNoHindrance()
    {
        const QByteArray program = programWithLoadConfig() + loadConfigBytes(0) + 'x'
            + loadConfigBytes(0);
        QCOMPARE(finish(program), QString());
        QVERIFY(readFile(m_path).endsWith(loadConfigBytes(0)));
    }

    void refusals_data()
    {
        QTest::addColumn<QByteArray>("program");
        const QByteArray usual = petest::makeProgram({});
        QTest::newRow("no program") << QByteArray(4096, 'x');
        QTest::newRow("without a load configuration") << usual;
        QTest::newRow("with one that is finished")
            << programWithLoadConfig().replace(loadConfigBytes(), loadConfigBytes(0));
        QTest::newRow("with one outside its sections") << usual + loadConfigBytes();
        QTest::newRow("with two of them") << usual + loadConfigBytes() + loadConfigBytes();
    }
    void refusals()
    {
        QFETCH(QByteArray, program);
        QVERIFY(!finish(program).isEmpty());
        QVERIFY(readFile(m_path) == program);
    }

    void twoProgramsHaveTwoStamps()
    {
        QByteArray program = programWithLoadConfig();
        QCOMPARE(finish(program), QString());
        const quint32 one = ProgramReader(readFile(m_path)).timeStamp();
        program.append('x');
        QCOMPARE(finish(program), QString());
        QVERIFY(ProgramReader(readFile(m_path)).timeStamp() != one);
    }
};

QTEST_APPLESS_MAIN(TestFinishing)
#include "tst_finishing.moc"
