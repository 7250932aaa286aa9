// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/settings.h"

#include <QTest>

using namespace sfx;
using namespace Qt::StringLiterals;

namespace {

Status parse(const QByteArray &text, Settings &settings)
{
    return parseSettings(text.constData(), static_cast<std::size_t>(text.size()), settings);
}

QString toQString(const Text &text)
{
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

// The text of the settings. tst_startplan finds it in a file.
class TestSettings : public QObject
{
    Q_OBJECT

private slots:
    void readsEveryKey();
    void leavesOpenWhatIsNotSet();
    void accepts_data();
    void accepts();
    void refuses_data();
    void refuses();
    void knowsTheWorkingFolders();
};

void TestSettings::readsEveryKey()
{
    const QByteArray text = "Program=\"bin/\xe7\xa8\x8b \xf0\x9f\x98\x80.exe\"\r\n"
                            "Folder=\"my \xe7\xa8\x8b\"\n"
                            "Title=\"A \"title\"\"\n"
                            "Arguments=\"--x \"a b\" y=\"z\"\"\n"
                            "WorkingFolder=\"exe\"\n"
                            "Silent=\"1\"\n"
                            "Keep=\"30\"\n"
                            "KeepVerify=\"1\"\n"
                            "Product=\"Maker | A \xe7\xa8\x8b\"\n";
    Settings settings;
    QCOMPARE(parse(text, settings), Status::Ok);
    QCOMPARE(toQString(settings.program), u"bin/\u7a0b \U0001f600.exe"_s);
    QCOMPARE(toQString(settings.folderName), u"my \u7a0b"_s);
    QCOMPARE(toQString(settings.title), u"A \"title\""_s);
    QCOMPARE(toQString(settings.arguments), u"--x \"a b\" y=\"z\""_s);
    QCOMPARE(settings.workingFolder, WorkingFolder::Executable);
    QVERIFY(settings.silent);
    QCOMPARE(settings.keepDays, 30u);
    QVERIFY(settings.keepVerify);
    QCOMPARE(toQString(settings.product), u"Maker | A \u7a0b"_s);
    QVERIFY(settings.hasTitle && settings.hasSilent && settings.hasWorkingFolder);
}

void TestSettings::leavesOpenWhatIsNotSet()
{
    Settings settings;
    QCOMPARE(parse(QByteArray(), settings), Status::Ok);
    QVERIFY(settings.program.isEmpty() && settings.folderName.isEmpty());
    QVERIFY(settings.title.isEmpty() && settings.arguments.isEmpty());
    QVERIFY(settings.keepDays == 0 && !settings.keepVerify && settings.product.isEmpty());
    QCOMPARE(settings.workingFolder, WorkingFolder::Application);
    QVERIFY(!settings.hasTitle && !settings.hasSilent && !settings.hasWorkingFolder);
}

void TestSettings::accepts_data()
{
    QTest::addColumn<QByteArray>("text");
    const auto row = [](const char *name, const QByteArray &text) {
        QTest::newRow(name) << text;
    };
    row("a program at the top level", "Program=\"app.exe\"\n");
    row("a program that is no .exe", "Program=\"bin/start.com\"\n");
    row("signs of the lines' own syntax in a name", "Program=\"a=b;c/x.exe\"\n");
    row("an empty title", "Title=\"\"\n");
    row("empty arguments", "Arguments=\"\"\n");
    row("a tab between arguments", "Arguments=\"a\tb\"\n");
    row("blanks around arguments", "Arguments=\"  a  \"\n");
    row("the longest arguments", "Arguments=\"" + QByteArray(8191, 'x') + "\"\n");
    row("the longest arguments, in Chinese",
        "Arguments=\"" + QByteArray("\xe7\xa8\x8b").repeated(8191) + "\"\n");
    row("messages are shown", "Silent=\"0\"\n");
    row("one day", "Keep=\"1\"\n");
    row("ten years", "Keep=\"3650\"\n");
    row("contents are not compared", "Keep=\"30\"\nKeepVerify=\"0\"\n");
    row("contents are not compared, and nothing is kept", "KeepVerify=\"0\"\n");
    row("the days after the comparison", "KeepVerify=\"1\"\nKeep=\"30\"\n");
    row("a product without days", "Product=\"x\"\n");
    row("no name of a product", "Keep=\"30\"\nProduct=\"\"\n");
    row("the longest text", "Title=\"" + QByteArray(64 * 1024 - 9, 'x') + "\"\n");
}

void TestSettings::accepts()
{
    QFETCH(QByteArray, text);
    Settings settings;
    QCOMPARE(parse(text, settings), Status::Ok);
}

void TestSettings::refuses_data()
{
    QTest::addColumn<QByteArray>("text");
    const auto row = [](const char *name, const QByteArray &text) {
        QTest::newRow(name) << text;
    };
    row("an unknown key", "Colour=\"red\"\n");
    row("a key in other letters", "title=\"x\"\n");
    row("a key that comes twice", "Title=\"a\"\nTitle=\"a\"\n");
    row("a key that comes twice, at first empty", "Arguments=\"\"\nArguments=\"x\"\n");
    row("a blank before the key", " Title=\"a\"\n");
    row("a blank after the value", "Title=\"a\" \n");
    row("an empty line", "Title=\"a\"\n\n");
    row("a remark", ";Title=\"a\"\n");
    row("a line without a value", "Title\n");
    row("a value without quotes", "Title=a\n");
    row("a value without its second quote", "Title=\"a\n");
    row("a value of one quote", "Title=\"\n");
    row("a last line without its end", "Title=\"a\"\nSilent=\"1\"");
    row("a byte order mark", "\xef\xbb\xbfTitle=\"a\"\n");
    row("a zero", QByteArray("Title=\"a\0b\"\n", 12));
    row("an overlong zero", "Title=\"a\xc0\x80\"\n");
    row("a surrogate", "Arguments=\"\xed\xa0\x80\"\n");
    row("text that is not UTF-8", "Arguments=\"a\xff\"\n");
    row("a carriage return in a value", "Title=\"a\rb\"\n");
    row("an escape sequence in the title", "Title=\"\x1b[2Ja\"\n");
    row("an escape sequence of one character",
        "Title=\"\xc2\x9b"
        "2Ja\"\n");
    row("a delete character in arguments", "Arguments=\"a\x7f\"\n");
    row("one byte too many", "Title=\"" + QByteArray(64 * 1024 - 8, 'x') + "\"\n");
    row("arguments that are too long", "Arguments=\"" + QByteArray(8192, 'x') + "\"\n");
    row("no program", "Program=\"\"\n");
    row("a program above", "Program=\"../app.exe\"\n");
    row("a program above a folder", "Program=\"bin/../app.exe\"\n");
    row("an absolute program", "Program=\"/app.exe\"\n");
    row("a program with a drive", "Program=\"C:/app.exe\"\n");
    row("a program on a share", "Program=\"//server/share/app.exe\"\n");
    row("a program with a backslash", "Program=\"bin\\app.exe\"\n");
    row("a program with a stream", "Program=\"bin/app.exe:x\"\n");
    row("a program with a wildcard", "Program=\"bin/*.exe\"\n");
    row("a program with a quote", "Program=\"bin/a\"b.exe\"\n");
    row("a program with a tab", "Program=\"bin/a\tb.exe\"\n");
    row("a program that is a device", "Program=\"bin/nul.exe\"\n");
    row("a program in a device", "Program=\"con/app.exe\"\n");
    row("a program with an empty folder", "Program=\"bin//app.exe\"\n");
    row("a folder as the program", "Program=\"bin/\"\n");
    row("a program that ends in a dot", "Program=\"bin/app.\"\n");
    row("a folder that ends in a blank", "Program=\"bin /app.exe\"\n");
    row("a folder's name of 256 characters", "Folder=\"" + QByteArray(256, 'x') + "\"\n");
    row("a path of more than 30000 characters",
        "Program=\"" + QByteArray("abcde/").repeated(5000) + "x\"\n");
    row("no folder", "Folder=\"\"\n");
    row("a folder above", "Folder=\"..\"\n");
    row("a folder below another", "Folder=\"a/b\"\n");
    row("a folder below another, with a backslash", "Folder=\"a\\b\"\n");
    row("a folder that is a device", "Folder=\"aux\"\n");
    row("an unknown working folder", "WorkingFolder=\"temp\"\n");
    row("a working folder in other letters", "WorkingFolder=\"App\"\n");
    row("no working folder", "WorkingFolder=\"\"\n");
    row("a path as working folder", "WorkingFolder=\"C:\\\"\n");
    row("silent, but not 0 or 1", "Silent=\"yes\"\n");
    row("silent, but empty", "Silent=\"\"\n");
    row("no days", "Keep=\"\"\n");
    row("zero days", "Keep=\"0\"\n");
    row("more than ten years", "Keep=\"3651\"\n");
    row("days beyond every number", "Keep=\"4294967297\"\n");
    row("many digits", "Keep=\"" + QByteArray(5000, '9') + "\"\n");
    row("days with a sign", "Keep=\"-1\"\n");
    row("days with a plus sign", "Keep=\"+1\"\n");
    row("days with a zero before them", "Keep=\"030\"\n");
    row("days with a blank", "Keep=\"30 \"\n");
    row("half a day", "Keep=\"1.5\"\n");
    row("days as a word", "Keep=\"month\"\n");
    row("days in hexadecimal digits", "Keep=\"0x1e\"\n");
    row("a comparison without days", "KeepVerify=\"1\"\n");
    row("a comparison, but not 0 or 1", "Keep=\"30\"\nKeepVerify=\"yes\"\n");
    row("an escape sequence in the product", "Keep=\"30\"\nProduct=\"\x1b[2Ja\"\n");
}

void TestSettings::refuses()
{
    QFETCH(QByteArray, text);
    Settings settings;
    QCOMPARE(parse(text, settings), Status::Damaged);
}

void TestSettings::knowsTheWorkingFolders()
{
    const std::pair<const char *, WorkingFolder> words[] = {{"app", WorkingFolder::Application},
                                                            {"caller", WorkingFolder::Caller},
                                                            {"exe", WorkingFolder::Executable}};
    for (const auto &[word, folder] : words) {
        Settings settings;
        QCOMPARE(parse("WorkingFolder=\"" + QByteArray(word) + "\"\n", settings), Status::Ok);
        QCOMPARE(settings.workingFolder, folder);
        QVERIFY(settings.hasWorkingFolder);
    }
}

QTEST_APPLESS_MAIN(TestSettings)
#include "tst_settings.moc"
