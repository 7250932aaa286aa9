// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/moduletest.h"

#include <QTest>

using namespace Qt::StringLiterals;
using sfx::ExitCode;

// Files with settings, which the packer puts into the module's resources. tst_settings and
// tst_startplan have all kinds of them.
class TestSettingsStart : public ModuleTest
{
    Q_OBJECT

private slots:
    void startsWhereItIsTold_data();
    void startsWhereItIsTold();
    void putsItsArgumentsFirst_data();
    void putsItsArgumentsFirst();
    void doesNotStartWithoutItsArguments();
    void startsAProgramInAFolder();
    void needsTheSettingForAProgramInAFolder();
    void saysThatTheProgramIsMissing();
    void hasItsOwnTitle();
    void refusesDamageBeforeItWrites_data();
    void refusesDamageBeforeItWrites();

private:
    QString assembleInFolder() const;
};

void TestSettingsStart::startsWhereItIsTold_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<QString>("variable"); // that names the same folder
    QTest::newRow("not told") << QByteArray("Silent=\"0\"\n") << "KESTRELPACK_DIR";
    QTest::newRow("in the application's folder")
        << QByteArray("WorkingFolder=\"app\"\n") << "KESTRELPACK_DIR";
    QTest::newRow("in the caller's folder")
        << QByteArray("WorkingFolder=\"caller\"\n") << "KESTRELPACK_CWD";
    QTest::newRow("in the produced file's folder")
        << QByteArray("WorkingFolder=\"exe\"\n") << "KESTRELPACK_EXE_DIR";
}

void TestSettingsStart::startsWhereItIsTold()
{
    QFETCH(QByteArray, settings);
    QFETCH(QString, variable);
    QVERIFY(m_run.prepareModule(settings));
    const Run result = m_run.run(m_run.assembleProgram());
    QCOMPARE(result.exitCode, 7);
    QVERIFY(!result.value("folder").isEmpty());
    QCOMPARE(result.value("folder"), result.value(variable.toUtf8()));
    QCOMPARE(result.value("KESTRELPACK_CWD"), windowsPath(m_run.callersFolder()));
    QVERIFY(result.value("KESTRELPACK_CWD") != result.value("KESTRELPACK_EXE_DIR"));
    QVERIFY(result.value("program").startsWith(result.value("KESTRELPACK_DIR") + u'\\'));
}

void TestSettingsStart::putsItsArgumentsFirst_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("callers");
    QTest::newRow("one alone") << "--exit=7"
                               << "";
    QTest::newRow("before the caller's") << "run"
                                         << " one \"two three\"";
    QTest::newRow("with quotes and blanks") << R"(--name "a \"b\" c"  d\)"
                                            << "  x";
    QTest::newRow("in Chinese") << u"\u811a\u672c.js \"\u6211\u7684 \u6587\u4ef6\""_s
                                << u" \u53c2\u6570"_s;
    QTest::newRow("an emoji and percent signs") << u"\U0001f600 %TEMP% %1"_s << " %2";
    QTest::newRow("as many as a file may have") << QString(8191, u'x') << " y";
}

void TestSettingsStart::putsItsArgumentsFirst()
{
    QFETCH(QString, arguments);
    QFETCH(QString, callers);
    QVERIFY(m_run.prepareModule("Arguments=\"" + arguments.toUtf8() + "\"\n"));
    const Run result = m_run.run(m_run.assembleProgram(), callers);
    QCOMPARE(result.value("tail"), u' ' + arguments + callers);
    QCOMPARE(result.exitCode, 7);
}

// The caller's arguments have room, but not together with the file's own.
void TestSettingsStart::doesNotStartWithoutItsArguments()
{
    QVERIFY(m_run.prepareModule("Arguments=\"" + QByteArray(8191, 'x') + "\"\n"));
    const Run result = m_run.run(m_run.assembleProgram(), u' ' + QString(25000, u'y'));
    QCOMPARE(result.value("ended").toUInt(), static_cast<quint32>(ExitCode::StartFailed));
    QCOMPARE(result.value("program"), QString());
    QVERIFY(result.errors.contains("main.exe"));
}

// The block is as the packer writes it for such a program. Its own names are not used.
QString TestSettingsStart::assembleInFolder() const
{
    return m_run.assemble(Tree{{u"bin/app.exe"_s, ModuleRun::programBytes()},
                               {u"app.exe"_s, "not this"}},
                          u"bin/app.exe"_s);
}

void TestSettingsStart::startsAProgramInAFolder()
{
    QVERIFY(m_run.prepareModule("Program=\"bin/app.exe\"\nFolder=\"my app\"\n"));
    const Run result = m_run.run(assembleInFolder(), u" --exit=5"_s);
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, 5);
    const QString folder = result.value("KESTRELPACK_DIR");
    QVERIFY2(folder.endsWith(u"\\my app"_s), qPrintable(folder));
    QCOMPARE(result.value("program"), folder + u"\\bin\\app.exe"_s);
    QCOMPARE(result.value("line"), u'"' + folder + u"\\bin\\app.exe\" --exit=5"_s);
    QCOMPARE(result.value("folder"), folder);
}

void TestSettingsStart::needsTheSettingForAProgramInAFolder()
{
    QVERIFY(m_run.prepareModule("Silent=\"0\"\n"));
    const Run result = m_run.run(assembleInFolder());
    QCOMPARE(result.exitCode, lowByte(ExitCode::Damaged));
    QCOMPARE(result.value("program"), QString());
}

void TestSettingsStart::saysThatTheProgramIsMissing()
{
    QVERIFY(m_run.prepareModule("Program=\"bin/other.exe\"\nFolder=\"app\"\n"));
    const Run result = m_run.run(assembleInFolder());
    QCOMPARE(result.exitCode, lowByte(ExitCode::ProgramMissing));
    QVERIFY2(result.errors.contains("bin/other.exe"), result.errors.constData());
}

void TestSettingsStart::hasItsOwnTitle()
{
    QVERIFY(m_run.prepareModule("Title=\"\xe6\x88\x91\xe7\x9a\x84 tool\"\n"));
    const Run result = m_run.run(m_run.assemble(Tree{{u"other.exe"_s, "x"}}, u"main.exe"_s));
    QCOMPARE(result.exitCode, lowByte(ExitCode::ProgramMissing));
    QVERIFY2(result.errors.startsWith("\xe6\x88\x91\xe7\x9a\x84 tool: "),
             result.errors.constData());
}

void TestSettingsStart::refusesDamageBeforeItWrites_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<bool>("forConsole");
    const std::pair<const char *, QByteArray> damages[]
        = {{"an unknown key", "Colour=\"red\"\n"},
           {"a key that comes twice", "Silent=\"0\"\nSilent=\"0\"\n"},
           {"a line without its end", "Silent=\"0\""},
           {"text that is not UTF-8", "Title=\"\xff\"\n"},
           {"an escape sequence", "Title=\"\x1b[2J\"\n"},
           {"a program above", "Program=\"../main.exe\"\nFolder=\"app\"\n"},
           {"a folder above", "Folder=\"..\"\n"},
           {"another working folder", "WorkingFolder=\"C:\\\"\n"},
           {"arguments that are too long", "Arguments=\"" + QByteArray(8192, 'x') + "\"\n"},
           {"a kept folder, in the small module", "Keep=\"30\"\n"},
           {"how to compare it", "KeepVerify=\"0\"\n"},
           {"its product", "Product=\"p\"\n"},
           {"more than 64 KiB", "Title=\"" + QByteArray(64 * 1024, 'x') + "\"\n"}};
    QTest::newRow("none") << QByteArray("Silent=\"0\"\n") << false;
    for (const auto &[name, settings] : damages) {
        QTest::newRow(name) << settings << false;
    }
    QTest::newRow("an unknown key, for the console") << damages[0].second << true;
}

// Without a temporary folder nothing can be written: a file that tries it ends with another code.
void TestSettingsStart::refusesDamageBeforeItWrites()
{
    QFETCH(QByteArray, settings);
    QFETCH(bool, forConsole);
    QVERIFY(m_run.prepareModule(settings, forConsole));
    const QString missing = u"--temp="_s + windowsPath(m_run.path(u"missing"_s));
    const Run result = m_run.run(m_run.assembleProgram(), QString(), {missing});
    const bool isRight = QTest::currentDataTag() == "none"_L1;
    QCOMPARE(result.value("ended").toUInt(),
             static_cast<quint32>(isRight ? ExitCode::NoFolder : ExitCode::Damaged));
    QCOMPARE(result.value("program"), QString());
    QCOMPARE(result.errors.startsWith("Kestrelpack: This file is damaged or incomplete."),
             !isRight);
}

QTEST_GUILESS_MAIN(TestSettingsStart)
#include "tst_settingsstart.moc"
