// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/options.h"

#include "cli/commandline.h"
#include "cli/configfile.h"
#include "cli/helptext.h"
#include "cli/shelldocuments.h"
#include "tests/fakes/privatetemp.h"
#include "tests/support/testfiles.h"

#include <QRegularExpression>
#include <QTest>

// The parser, the help, the configuration file, the manual page and the completions know the same
// options.
class TestOptions : public QObject
{
    Q_OBJECT

private:
    // A value that is accepted.
    static QString goodValue(const OptionInfo &option)
    {
        if (option.valueKind == ValueKind::Word) {
            return wordsOf(option).constFirst();
        }
        return option.id == OptionId::Set  ? "ProductName=Example"
            : option.id == OptionId::Mtime ? "86400"
            : option.id == OptionId::Keep  ? "30"
                                           : "value";
    }

    // All long options that a text names.
    static QSet<QString> namedIn(QString text)
    {
        text.replace("\\-", "-"); // in the manual page
        static const QRegularExpression name("--([a-z][a-z-]*)");
        QSet<QString> names;
        for (auto matches = name.globalMatch(text); matches.hasNext();) {
            names << matches.next().captured(1);
        }
        return names;
    }

    static QSet<QString> allNames()
    {
        QSet<QString> names;
        for (const OptionInfo &option : options()) {
            names << option.name;
        }
        return names;
    }

private slots:
    void theTableIsInOrder()
    {
        QSet<QString> names;
        QSet<char> shortNames;
        for (int i = 0; i < options().size(); ++i) {
            const OptionInfo &option = options().at(i);
            QCOMPARE(int(option.id), i);
            QVERIFY2(!names.contains(option.name), option.name);
            names << option.name;
            QVERIFY2(!option.shortName || !shortNames.contains(option.shortName), option.name);
            shortNames << option.shortName;
            QCOMPARE(*option.valueName == 0, option.kind == OptionKind::Switch);
            QCOMPARE(*option.words == 0, option.valueKind != ValueKind::Word);
            QVERIFY2(*option.english && *option.chinese, option.name);
        }
        QCOMPARE(int(OptionId::Help) + 1, int(options().size()));
    }

    void theTextsNameEveryOptionAndNoOther_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("help") << helpText(Language::English);
        QTest::newRow("Chinese help") << helpText(Language::Chinese);
        QTest::newRow("manual page") << manualPage();
        QTest::newRow("bash") << bashCompletion();
        QTest::newRow("zsh") << zshCompletion();
    }
    void theTextsNameEveryOptionAndNoOther()
    {
        QFETCH(QString, text);
        QCOMPARE(namedIn(text), allNames());
    }

    void theParserKnowsEveryOption()
    {
        for (const OptionInfo &option : options()) {
            const QString name = QStringLiteral("--") + option.name;
            QStringList arguments = option.kind == OptionKind::Switch
                ? QStringList{"kestrelpack-cli", name, "app"}
                : QStringList{"kestrelpack-cli", name, goodValue(option), "app"};
            if (option.id == OptionId::KeepVerify) { // has no meaning alone
                arguments += {"--keep", "30"};
            }
            const CommandLine line = parseCommandLine(arguments);
            QVERIFY2(line.action != CommandLine::Action::Refuse || option.id == OptionId::Config,
                     qPrintable(line.message));
            QVERIFY2(!line.message.startsWith("Unknown"), qPrintable(line.message));
        }
    }

    void theConfigurationFileKnowsEveryOptionWithAKey()
    {
        PrivateTemp temp;
        for (const OptionInfo &option : options()) {
            // A file for each: QSettings keeps the content of a file that has the same size and time.
            const QString file = temp.filePath(option.name + QString(".ini"));
            const QByteArray value = option.kind == OptionKind::Switch ? "yes"
                                                                       : goodValue(option).toUtf8();
            QVERIFY(writeFile(file, option.name + QByteArray("=") + value));
            const auto read = readConfigFile(file);
            if (!option.isKey) {
                QCOMPARE(std::get<QString>(read), file + ": there is no key " + option.name);
                continue;
            }
            const auto *values = std::get_if<OptionValues>(&read);
            QVERIFY2(values && values->keys() == QList{option.id}, option.name);
        }
    }

    void linesAreWrapped()
    {
        QCOMPARE(wrapped("one two three", 7), QStringList({"one two", "three"}));
        QCOMPARE(wrapped("one", 2), QStringList("one"));
        for (const QString &line : helpText(Language::English).split('\n')) {
            QVERIFY2(line.size() <= 112, qPrintable(line));
        }
    }
};

QTEST_APPLESS_MAIN(TestOptions)
#include "tst_options.moc"
