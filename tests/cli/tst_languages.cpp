// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/enginetexts.h"
#include "cli/language.h"
#include "cli/messagetexts.h"
#include "platform/joblog.h"
#include "tests/cli/clirun.h"
#include "tests/support/builtfile.h"
#include "tests/support/onwindows.h"

#include <QDirIterator>
#include <QRegularExpression>
#include <QTest>

class TestLanguages : public QObject
{
    Q_OBJECT

private:
    // The texts in the sources of a folder that follow `before`, such as "tr(".
    static QSet<QString> textsIn(const QString &folder, const QString &before)
    {
        const QString quoted = "\"((?:[^\"\\\\]|\\\\.)*)\"";
        const QRegularExpression call("\\b" + QRegularExpression::escape(before)
                                      + "\\s*((?:" + quoted + "\\s*)+)");
        const QRegularExpression piece(quoted);
        QSet<QString> texts;
        QDirIterator files(folder, {"*.cpp"}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString source = QString::fromUtf8(readFile(files.next()));
            for (auto calls = call.globalMatch(source); calls.hasNext();) {
                QString text;
                for (auto pieces = piece.globalMatch(calls.next().captured(1)); pieces.hasNext();) {
                    text += pieces.next().captured(1);
                }
                texts << text.replace("\\\"", "\"").replace("\\\\", "\\");
            }
        }
        return texts;
    }

    static QStringList placeholdersOf(const char *text)
    {
        static const QRegularExpression placeholder("%\\d");
        QStringList found;
        for (auto all = placeholder.globalMatch(QString::fromUtf8(text)); all.hasNext();) {
            found << all.next().captured();
        }
        found.sort();
        return found;
    }

    // The kit for Windows machines does not have them.
    static bool hasSources() { return QDir(builtFile(KESTRELPACK_SOURCES "/packaging")).exists(); }

private slots:
    void theEnginesTextsAreTheOnesInItsSources()
    {
        if (!hasSources()) {
            QSKIP("the sources are not here");
        }
        QSet<QString> listed;
        for (const EngineText &text : engineTexts()) {
            listed << QString::fromUtf8(text.chinese);
            QCOMPARE(placeholdersOf(text.english), placeholdersOf(text.chinese));
        }
        QCOMPARE(listed,
                 textsIn(builtFile(KESTRELPACK_SOURCES "/packaging"), "tr(")
                     + textsIn(builtFile(KESTRELPACK_SOURCES "/icons"), "tr("));
        QCOMPARE(listed.size(), engineTexts().size());
    }

    void everyMessageHasAChineseText()
    {
        if (!hasSources()) {
            QSKIP("the sources are not here");
        }
        QSet<QString> listed;
        for (const MessageText &text : messageTexts()) {
            listed << QString::fromUtf8(text.english);
            QCOMPARE(placeholdersOf(text.english), placeholdersOf(text.chinese));
        }
        QSet<QString> missing = textsIn(builtFile(KESTRELPACK_SOURCES "/cli"), "text(");
        QVERIFY(missing.size() > 40);
        const QSet<QString> ofPreparation
            = textsIn(builtFile(KESTRELPACK_SOURCES "/preparation"), "Message{");
        QVERIFY(ofPreparation.size() > 40);
        missing += ofPreparation;
        missing.subtract(listed);
        QCOMPARE(missing, QSet<QString>());
    }

    void theKindOfALineIsTheSameInBothLanguages()
    {
        for (const EngineText &text : engineTexts()) {
            for (const char *line : {text.chinese, text.english}) {
                const QString made = QString::fromUtf8(line).replace("%1", "a").replace("%2", "b");
                QCOMPARE(int(kindOfLogLine(made)), int(text.kind));
                QCOMPARE(int(stageBegunBy(made)), int(text.begins));
            }
        }
    }

    void theLanguageIsSet()
    {
        setLanguage(Language::English);
        QCOMPARE(text("%1 is not a folder"), "%1 is not a folder");
        QCOMPARE(WorkerText::tr("压缩包创建成功"), "The archive is complete");
        setLanguage(Language::Chinese);
        QCOMPARE(text("%1 is not a folder"), "%1 不是文件夹");
        QCOMPARE(text("no message of this program"), "no message of this program");
        QCOMPARE(WorkerText::tr("压缩包创建成功"), "压缩包创建成功");
    }

    void names_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("language"); // -1: none
        QTest::newRow("English") << "en" << int(Language::English);
        QTest::newRow("Chinese") << "zh" << int(Language::Chinese);
        QTest::newRow("in capitals") << "ZH" << int(Language::Chinese);
        QTest::newRow("with a country") << "zh_CN" << -1;
        QTest::newRow("empty") << "" << -1;
    }
    void names()
    {
        QFETCH(QString, name);
        const auto found = languageNamed(name);
        QTEST(found ? int(*found) : -1, "language");
    }

    void aRun_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<bool>("isChinese");
        QTest::newRow("a Chinese system") << "zh_CN.UTF-8" << QStringList() << true;
        QTest::newRow("an English one") << "en_US.UTF-8" << QStringList() << false;
        QTest::newRow("a German one") << "de_DE.UTF-8" << QStringList() << false;
        QTest::newRow("English, on a Chinese one")
            << "zh_CN.UTF-8" << QStringList("--language=en") << false;
        QTest::newRow("Chinese, on an English one")
            << "en_US.UTF-8" << QStringList({"--language", "ZH"}) << true;
    }
    void aRun()
    {
        if (onWindows) {
            QSKIP("a variable does not change the language here");
        }
        QFETCH(QString, locale);
        QFETCH(QStringList, arguments);
        QFETCH(bool, isChinese);
        CliSurroundings s;
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("LC_ALL", locale);
        environment.insert("LANGUAGE", "");
        process.setProcessEnvironment(environment);
        process.start(builtFile(KESTRELPACK_CLI), arguments + s.arguments());
        const CliResult result = CliSurroundings::resultOf(process);
        QCOMPARE(result.exitStatus, 0);
        QCOMPARE(result.outputLines().constFirst(),
                 isChinese ? "开始创建便携应用..." : "Creating the portable application...");
        process.start(builtFile(KESTRELPACK_CLI), arguments + QStringList{"--wrong"});
        QCOMPARE(CliSurroundings::resultOf(process).errors,
                 isChinese ? "kestrelpack-cli: 未知的选项“wrong”；用 --help 查看用法\n"
                           : "kestrelpack-cli: Unknown option 'wrong'; --help shows the usage\n");
        process.start(builtFile(KESTRELPACK_CLI), arguments + QStringList{"--help"});
        QCOMPARE(CliSurroundings::resultOf(process).output.startsWith("用法"), isChinese);
    }
};

QTEST_GUILESS_MAIN(TestLanguages)
#include "tst_languages.moc"
