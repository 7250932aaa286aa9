// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/programedit.h"
#include "tests/cli/clirun.h"
#include "tests/helpers/pe/nativepathof.h"
#include "tests/helpers/pe/petest.h"
#include "tests/support/onwindows.h"
#include "tests/support/testfiles.h"

#include <QTest>

#include <memory>

#ifndef Q_OS_WIN
#include <sys/stat.h>
#endif

// kestrelpack-cli refuses what could never start, before it packs: with one line that names the thing
// and the rule, status 2, and nothing written.
class TestPackRefusals : public QObject
{
    Q_OBJECT

private:
    // A program for another machine or subsystem, or one that is a library.
    static QByteArray changedProgram(int offset, char low, char high)
    {
        QByteArray program = petest::makeProgram({.resources = false});
        const int header = int(uchar(program[0x3c])) | int(uchar(program[0x3d])) << 8;
        program[header + offset] = low;
        program[header + offset + 1] = high;
        return program;
    }

    CliResult pack(const QStringList &options) const
    {
        QProcess process;
        process.start(builtFile(KESTRELPACK_CLI),
                      QStringList{"--language", "en", "-o", m_temp->filePath("out")} + options
                          + QStringList{m_temp->filePath("source")});
        return CliSurroundings::resultOf(process);
    }

    bool write(const QString &name, const QByteArray &content) const
    {
        const QString path = m_temp->filePath("source/" + name);
        return QDir().mkpath(QFileInfo(path).path()) && writeFile(path, content);
    }

    std::unique_ptr<PrivateTemp> m_temp;

private slots:
    void init()
    {
        m_temp = std::make_unique<PrivateTemp>();
        QVERIFY(write("app.exe", petest::makeProgram({.resources = false})));
        QVERIFY(write("data/text.txt", "text"));
    }
    void cleanup() { m_temp.reset(); }

    void refusesOptions_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QString>("part"); // of the message
        QTest::newRow("an unknown field") << QStringList{"--set", "Colour=red"} << "Colour";
        QTest::newRow("no version") << QStringList{"--set", "FileVersion=1.2.x"} << "1.2.x";
        QTest::newRow("a broken pattern") << QStringList{"--exclude", "[a"} << "[a";
        QTest::newRow("nothing is left") << QStringList{"--exclude", "*"} << "app.exe";
        QTest::newRow("the main program is left out")
            << QStringList{"--exclude", "*.exe"} << "*.exe";
        QTest::newRow("too many arguments")
            << QStringList{"--arguments", QString(8192, 'a')} << "8191";
    }
    void refusesOptions()
    {
        QFETCH(QStringList, options);
        QFETCH(QString, part);
        const CliResult result = pack(options);
        QCOMPARE(result.exitStatus, 2);
        QVERIFY2(result.errors.contains(part), qPrintable(result.errors));
        QVERIFY(!QFile::exists(m_temp->filePath("out"))); // the folder is yet to be made
    }

    void refusesMainPrograms_data()
    {
        QTest::addColumn<QByteArray>("program");
        QTest::addColumn<QString>("part");
        QTest::newRow("no program") << QByteArray("a text") << "app.exe";
        QTest::newRow("a library") << changedProgram(4 + 18, 0x22, 0x20) << "app.exe";
        QTest::newRow("firmware") << changedProgram(24 + 68, 10, 0) << "EFI";
        QTest::newRow("a driver") << changedProgram(24 + 68, 1, 0) << "driver";
    }
    void refusesMainPrograms()
    {
        QFETCH(QByteArray, program);
        QFETCH(QString, part);
        QVERIFY(write("app.exe", program));
        const CliResult result = pack({});
        QCOMPARE(result.exitStatus, 2);
        QVERIFY2(result.errors.contains(part), qPrintable(result.errors));
        QVERIFY(!QFile::exists(m_temp->filePath("out"))); // the folder is yet to be made
    }

    void keepsNothingForAnAdministratorsProgram()
    {
        const QByteArray manifest
            = "<assembly xmlns='urn:schemas-microsoft-com:asm.v1' manifestVersion='1.0'><trustInfo>"
              "<security><requestedPrivileges><requestedExecutionLevel "
              "level='requireAdministrator'/></requestedPrivileges></security></trustInfo>"
              "</assembly>";
        pe::ProgramEdit edit;
        edit.resources.push_back({pe::ResourceKey{std::nullopt, pe::manifestType},
                                  pe::ResourceKey{std::nullopt, 1}, 0,
                                  pe::Bytes(manifest.begin(), manifest.end())});
        const auto program = nativePathOf(m_temp->filePath("source/app.exe"));
        QVERIFY(!pe::editProgram(program, program, edit).hasError());
        const CliResult refused = pack({"--keep", "30"});
        QCOMPARE(refused.exitStatus, 2);
        QVERIFY2(refused.errors.contains("--keep is not for it"), qPrintable(refused.errors));
        QVERIFY(!QFile::exists(m_temp->filePath("out")));
        QCOMPARE(pack({}).exitStatus, 0);
    }

    void saysThatAProgramIsForAnotherMachine()
    {
        QVERIFY(write("app.exe", changedProgram(4, 0x64, char(0xaa))));
        const CliResult result = pack({});
        QCOMPARE(result.exitStatus, 0);
        QVERIFY2(result.errors.contains("ARM64"), qPrintable(result.errors));
    }

    // Such a program starts everywhere, so it is no reason for a warning.
    void remarksThatAProgramHas32Bits()
    {
        QVERIFY(write("app.exe", petest::makeProgram({.pe32Plus = false, .resources = false})));
        const CliResult quiet = pack({"-q"});
        QCOMPARE(quiet.exitStatus, 0);
        QCOMPARE(quiet.errors, QString());
        const CliResult result = pack({});
        QVERIFY2(result.output.contains("32-bit program"), qPrintable(result.output));
    }

#ifndef Q_OS_WIN
    void refusesWhatIsNoFile_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("link"); // where it leads; "|" makes a pipe instead
        QTest::addColumn<QString>("part");
        QTest::newRow("a link that leads out") << "data/out"
                                               << "/etc"
                                               << "data/out";
        QTest::newRow("a link to nothing") << "nothing"
                                           << "missing"
                                           << "nothing";
        QTest::newRow("a circle of links") << "circle"
                                           << "circle"
                                           << "circle";
        QTest::newRow("a pipe") << "data/pipe"
                                << "|"
                                << "data/pipe";
    }
    void refusesWhatIsNoFile()
    {
        QFETCH(QString, name);
        QFETCH(QString, link);
        QFETCH(QString, part);
        const QByteArray path = m_temp->filePath("source/" + name).toUtf8();
        QVERIFY(link == "|" ? mkfifo(path.constData(), 0644) == 0 : QFile::link(link, path));
        const CliResult result = pack({});
        QCOMPARE(result.exitStatus, 2);
        QVERIFY2(result.errors.contains(part), qPrintable(result.errors));
        QVERIFY(!QFile::exists(m_temp->filePath("out"))); // the folder is yet to be made
    }

    void refusesNames_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"con.txt", "a:b", "blank ", "dot.", "APP.EXE", "data/TEXT.txt"}) {
            QTest::newRow(name) << name;
        }
    }
    void refusesNames()
    {
        QFETCH(QString, name);
        QVERIFY(write(name, "text"));
        const CliResult result = pack({"-m", "app.exe"});
        QCOMPARE(result.exitStatus, 2);
        QVERIFY2(result.errors.contains(name), qPrintable(result.errors));
        QVERIFY(!QFile::exists(m_temp->filePath("out"))); // the folder is yet to be made
    }

    // A link inside is packed as what it leads to, and the log names the user's folder.
    void followsALinkInside()
    {
        QVERIFY(QFile::link("data/text.txt", m_temp->filePath("source/link.txt")));
        const CliResult result = pack({});
        QCOMPARE(result.exitStatus, 0);
        QCOMPARE(result.errors, QString());
        QVERIFY2(result.output.contains(m_temp->filePath("source")), qPrintable(result.output));
        QVERIFY2(!result.output.contains("kestrelpack-tree"), qPrintable(result.output));
        QProcess reader;
        reader.start(builtFile(KESTRELPACK_CLI),
                     {"extract", "-o", m_temp->filePath("unpacked"),
                      m_temp->filePath("out/app.exe")});
        QCOMPARE(CliSurroundings::resultOf(reader).exitStatus, 0);
        QCOMPARE(readFile(m_temp->filePath("unpacked/link.txt")), QByteArray("text"));
        QVERIFY(!QFileInfo(m_temp->filePath("unpacked/link.txt")).isSymLink());
        QCOMPARE(m_temp->names(), QStringList({"out", "source", "unpacked"}));
    }
#endif
};

QTEST_GUILESS_MAIN(TestPackRefusals)
#include "tst_packrefusals.moc"
