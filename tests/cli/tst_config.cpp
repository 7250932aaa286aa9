// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/commandline.h"
#include "tests/fakes/privatetemp.h"
#include "tests/support/testfiles.h"

#include <QTest>

#include <memory>

class TestConfig : public QObject
{
    Q_OBJECT

private:
    CommandLine parse(const QByteArray &content, const QStringList &more = {}) const
    {
        if (!QDir().mkpath(m_temp->filePath("folder"))
            || !writeFile(m_temp->filePath("folder/pack.ini"), content)) {
            qFatal("the file could not be made");
        }
        return parseCommandLine(
            QStringList{"kestrelpack-cli", "--config", m_temp->filePath("folder/pack.ini")} + more
            + QStringList{"app"});
    }

    QString here(QString text) const { return text.replace('@', m_temp->filePath("folder")); }

    std::unique_ptr<PrivateTemp> m_temp;

private slots:
    void init() { m_temp = std::make_unique<PrivateTemp>(); }
    void cleanup() { m_temp.reset(); }

    void everyKindOfValue()
    {
        const CommandLine line = parse("main=bin/app.exe\n"
                                       "; a comment\n"
                                       "name=\"one, two\"\n"
                                       "level=ultra\n"
                                       "exclude=*.pdb, .git/\n"
                                       "set=ProductName=Example\n"
                                       "title=标题\n"
                                       "silent=yes\n"
                                       "reproducible=false\n"
                                       "language=zh\n");
        QVERIFY2(line.action == CommandLine::Action::Pack, qPrintable(line.message));
        QCOMPARE(line.pack.mainProgram, "bin/app.exe");
        QCOMPARE(line.pack.name, "one, two.exe");
        QCOMPARE(line.pack.levelIndex, 5);
        QCOMPARE(line.pack.excludes, QStringList({"*.pdb", ".git/"}));
        QCOMPARE(line.pack.fields.size(), 1);
        QCOMPARE(line.pack.fields.constFirst().second, "Example");
        QCOMPARE(line.pack.title, "标题");
        QVERIFY(line.pack.silent);
        QVERIFY(!line.pack.reproducible);
        QVERIFY(line.language == Language::Chinese);
    }

    void pathsAreRelativeToTheFile()
    {
        const CommandLine line = parse("output=../out\nicon=icons/a.ico\nmain=a.exe\n");
        QCOMPARE(line.pack.output, here("@/../out"));
        QCOMPARE(line.pack.iconPath, here("@/icons/a.ico"));
        QCOMPARE(line.pack.mainProgram, "a.exe"); // is relative to the packed folder
        QVERIFY(parse("icon=none\n").pack.noIcon);
    }

    void theCommandLineWins()
    {
        const CommandLine line = parse("level=ultra\nexclude=*.pdb\noutput=there\nquiet=yes\n",
                                       {"-l", "fast", "-x", "*.txt", "-o", "here"});
        QCOMPARE(line.pack.levelIndex, 2);
        QCOMPARE(line.pack.excludes, QStringList("*.txt"));
        QCOMPARE(line.pack.output, "here");
        QVERIFY(line.pack.quiet);
    }

    void refused_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("message"); // "@" stands for the folder of the file
        QTest::newRow("an unknown key")
            << QByteArray("levle=fast\n") << "@/pack.ini: there is no key levle";
        QTest::newRow("a key in capitals")
            << QByteArray("Level=fast\n") << "@/pack.ini: there is no key Level";
        QTest::newRow("a section")
            << QByteArray("[pack]\nlevel=fast\n") << "@/pack.ini: there is no key pack/level";
        QTest::newRow("another configuration file")
            << QByteArray("config=b.ini\n") << "@/pack.ini: there is no key config";
        QTest::newRow("an empty value")
            << QByteArray("title=\n") << "--title needs a non-empty value";
        QTest::newRow("an empty path")
            << QByteArray("output=\n") << "--output needs a non-empty value";
        QTest::newRow("a list where one value is taken")
            << QByteArray("title=one, two\n")
            << "@/pack.ini: the key title takes one value; a value with commas needs double quotes";
        QTest::newRow("a switch with another word")
            << QByteArray("silent=maybe\n") << "@/pack.ini: the key silent takes yes or no";
        QTest::newRow("a value that is no text")
            << QByteArray("title=@Size(1 2)\n")
            << "@/pack.ini: the value of the key title is no text";
        QTest::newRow("a wrong level")
            << QByteArray("level=best\n")
            << "no such compression level: best (available: store, fastest, fast, normal, maximum, "
               "ultra)";
        QTest::newRow("a line without an equals sign")
            << QByteArray("level\n")
            << "@/pack.ini: this is no INI file: each line needs a key, an equals sign and a value";
        QTest::newRow("a contradiction")
            << QByteArray("quiet=yes\njson=yes\n") << "--json and --quiet contradict each other";
    }
    void refused()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, message);
        const CommandLine line = parse(content);
        QVERIFY(line.action == CommandLine::Action::Refuse);
        if (message.contains("@/")) {
            message = here(message);
        }
        QCOMPARE(line.message, message);
    }
};

QTEST_APPLESS_MAIN(TestConfig)
#include "tst_config.moc"
