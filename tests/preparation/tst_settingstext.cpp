// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/settingstext.h"

#include <QTest>

using Settings = QList<Setting>;
Q_DECLARE_METATYPE(Settings)

class TestSettingsText : public QObject
{
    Q_OBJECT

private slots:
    void written_data();
    void written();
    void refused_data();
    void refused();
    void limits();
    void valuesOfAMessage();
};

void TestSettingsText::written_data()
{
    QTest::addColumn<Settings>("settings");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("none") << Settings() << QByteArray();
    QTest::newRow("all, in their order")
        << Settings{{"Program", "bin/app.exe"}, {"Folder", "app-3.4.6"},  {"Title", "My app"},
                    {"Arguments", "--x"},       {"WorkingFolder", "exe"}, {"Silent", "1"},
                    {"Keep", "3650"},           {"KeepVerify", "1"},      {"Product", "A | B"}}
        << QByteArray("Program=\"bin/app.exe\"\nFolder=\"app-3.4.6\"\nTitle=\"My app\"\n"
                      "Arguments=\"--x\"\nWorkingFolder=\"exe\"\nSilent=\"1\"\n"
                      "Keep=\"3650\"\nKeepVerify=\"1\"\nProduct=\"A | B\"\n");
    QTest::newRow("quotes and a tab are kept") << Settings{{"Arguments", "-c \"a b\"\t\"\""}}
                                               << QByteArray("Arguments=\"-c \"a b\"\t\"\"\"\n");
    QTest::newRow("a quote after a backslash")
        << Settings{{"Arguments", "a\\\"b"}} << QByteArray("Arguments=\"a\\\"b\"\n");
    QTest::newRow("UTF-8") << Settings{{"Title", "音 ü 𝄞"}} << QByteArray("Title=\"音 ü 𝄞\"\n");
    QTest::newRow("an empty title") << Settings{{"Title", ""}} << QByteArray("Title=\"\"\n");
    QTest::newRow("backslashes are kept")
        << Settings{{"Arguments", R"(C:\a\ \\)"}} << QByteArray("Arguments=\"C:\\a\\ \\\\\"\n");
}

void TestSettingsText::written()
{
    QFETCH(const Settings, settings);
    const auto text = settingsText(settings);
    QVERIFY(std::holds_alternative<QByteArray>(text));
    QTEST(std::get<QByteArray>(text), "text");
}

void TestSettingsText::refused_data()
{
    QTest::addColumn<Settings>("settings");
    QTest::addColumn<QString>("reason");
    const QString control = "Title contains a line end or another control character";
    QTest::newRow("an unknown key")
        << Settings{{"Colour", "red"}} << "the self-extractor does not know the setting Colour";
    QTest::newRow("a key in small letters")
        << Settings{{"title", "a"}} << "the self-extractor does not know the setting title";
    QTest::newRow("a key twice") << Settings{{"Title", "a"}, {"Silent", "0"}, {"Title", "b"}}
                                 << "Title is set twice";
    QTest::newRow("a line feed") << Settings{{"Title", "a\nb"}} << control;
    QTest::newRow("a carriage return") << Settings{{"Title", "a\rb"}} << control;
    QTest::newRow("a NUL") << Settings{{"Title", QString(QChar(0))}} << control;
    QTest::newRow("an escape character") << Settings{{"Title", "\x1b[0m"}} << control;
    QTest::newRow("a control character after ASCII")
        << Settings{{"Title", QString(QChar(0x9b))}} << control;
    QTest::newRow("half a character") << Settings{{"Title", QString(QChar(0xd834))}} << control;
    QTest::newRow("another working folder")
        << Settings{{"WorkingFolder", "temp"}} << "WorkingFolder must be app, caller or exe";
    QTest::newRow("another silence") << Settings{{"Silent", "yes"}} << "Silent must be 0 or 1";
    for (const char *days : {"", "0", "3651", "-1", "+1", "030", "1.5", "month", " 30"}) {
        QTest::addRow("the days are <%s>", days)
            << Settings{{"Keep", days}} << "Keep must be a number from 1 to 3650";
    }
    QTest::newRow("another comparison")
        << Settings{{"Keep", "30"}, {"KeepVerify", "yes"}} << "KeepVerify must be 0 or 1";
    QTest::newRow("a comparison without days")
        << Settings{{"KeepVerify", "1"}} << "KeepVerify needs Keep";
    QTest::newRow("no program") << Settings{{"Program", ""}} << "Program is empty";
    QTest::newRow("an open quote")
        << Settings{{"Arguments", "-c \"a b"}} << "Arguments has a quote that is not closed";
    QTest::newRow("a quote that closes nothing")
        << Settings{{"Arguments", "\"a\\\""}} << "Arguments has a quote that is not closed";
    QTest::newRow("no folder") << Settings{{"Folder", ""}} << "Folder is empty";
}

void TestSettingsText::refused()
{
    QFETCH(const Settings, settings);
    const auto text = settingsText(settings);
    QVERIFY(std::holds_alternative<Message>(text));
    QTEST(textOf(std::get<Message>(text)), "reason");
}

void TestSettingsText::limits()
{
    const auto arguments = [](qsizetype length) {
        return settingsText({{"Arguments", QString(length, u'x')}});
    };
    QVERIFY(std::holds_alternative<QByteArray>(arguments(8191)));
    QCOMPARE(textOf(std::get<Message>(arguments(8192))),
             "Arguments has 8192 characters; the self-extractor takes at most 8191");
    const auto title = [](qsizetype length) {
        return settingsText({{"Title", QString(length, u'x')}});
    };
    const qsizetype frame = QByteArray("Title=\"\"\n").size();
    QVERIFY(std::holds_alternative<QByteArray>(title(64 * 1024 - frame)));
    QCOMPARE(textOf(std::get<Message>(title(64 * 1024 - frame + 1))),
             "the settings have 65537 bytes together; the self-extractor takes at most 65536");
}

void TestSettingsText::valuesOfAMessage()
{
    const Message message{"%1, %2, %3", {"%3", "%1", "b"}};
    QCOMPARE(textOf(message), "%3, %1, b");
    QCOMPARE(textOf(message, "%3 %2 %1"), "b %1 %3");
    QCOMPARE(textOf({"100 %"}), "100 %");
}

QTEST_APPLESS_MAIN(TestSettingsText)

#include "tst_settingstext.moc"
