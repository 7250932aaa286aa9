// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/archive/entryname.h"
#include "helpers/self-extractor/archive/pathset.h"

#include <QStringList>
#include <QTest>

using namespace sfx;

namespace {

void upperCase(char16_t *text, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i) {
        text[i] = QChar(text[i]).toUpper().unicode();
    }
}

const char16_t *units(const QString &text)
{
    return reinterpret_cast<const char16_t *>(text.utf16());
}

} // namespace

class TestEntryName : public QObject
{
    Q_OBJECT

private slots:
    void allowsOnlyPathsBelow_data();
    void allowsOnlyPathsBelow();
    void findsCollisions_data();
    void findsCollisions();
};

void TestEntryName::allowsOnlyPathsBelow_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("allowed");
    const QStringList good{"a.exe",
                           "a/b/c.txt",
                           ".hidden",
                           "...a",
                           "a..b",
                           "a b.exe",
                           "\u7a0b\u5e8f/\U0001f600.dll",
                           "console.txt",
                           "com.dll",
                           "COM10",
                           "nul-like",
                           "lpt",
                           "a;b=c,[d]{e}~!@#$%^&()'`",
                           QString(255, u'x'),
                           "conin",
                           "aux_1/x"};
    for (const QString &path : good) {
        QTest::addRow("%s is allowed", qPrintable(path.left(30))) << path << true;
    }
    const QStringList bad{"",
                          "/",
                          "/a",
                          "a/",
                          "a//b",
                          ".",
                          "..",
                          "../evil",
                          "a/../../evil",
                          "a/..",
                          "a/./b",
                          "a\\b",
                          "..\\evil",
                          "\\\\server\\share",
                          "C:/x",
                          "c:x",
                          "a:stream",
                          "a::$DATA",
                          "//?/C:/x",
                          "CON",
                          "con.txt",
                          "a/nul",
                          "NUL.tar.gz",
                          "aux ",
                          "prn",
                          "nul .txt",
                          "COM1",
                          "com9.log",
                          "LPT3",
                          "com\u00b9",
                          "lpt\u00b2.txt",
                          "COM\u00b3",
                          "CONIN$",
                          "conout$.x",
                          "COM0",
                          "a.",
                          "a ",
                          "dir /b",
                          "dir./b",
                          "a...",
                          "a\nb",
                          "a\tb",
                          QString(u'\x1f'),
                          "a*",
                          "a?",
                          "<a",
                          "a>",
                          "a|b",
                          "\"a\"",
                          QString(256, u'x')};
    for (const QString &path : bad) {
        QTest::addRow("'%s' is refused", qPrintable(path.left(30))) << path << false;
    }
    const QString deep = QString("abcdefg/").repeated(3750) + u'x';
    QTest::newRow("a path beyond Windows' limit is refused") << deep << false;
    QTest::newRow("a long path is allowed") << deep.mid(8 * 100) << true;
    QTest::newRow("a zero within is refused") << QString(QLatin1String("a\0b", 3)) << false;
}

void TestEntryName::allowsOnlyPathsBelow()
{
    QFETCH(QString, path);
    QTEST(isSafePath(units(path), static_cast<std::size_t>(path.size())), "allowed");
}

void TestEntryName::findsCollisions_data()
{
    QTest::addColumn<QStringList>("paths"); // folders end in a slash
    QTest::addColumn<bool>("collide");
    QTest::newRow("different names") << QStringList{"a", "b", "c/d", "c/"} << false;
    QTest::newRow("a folder before and after its content")
        << QStringList{"x/y", "x/", "x/z/", "x/z/a"} << false;
    QTest::newRow("names that begin alike") << QStringList{"a", "a b", "a!", "a/b", "a/"} << true;
    QTest::newRow("no collision among the like") << QStringList{"a b", "a!", "a/b", "a/"} << false;
    QTest::newRow("the same name twice") << QStringList{"a", "b", "a"} << true;
    QTest::newRow("the same folder twice") << QStringList{"a/", "a/"} << true;
    QTest::newRow("names that differ in case") << QStringList{"Readme", "b", "README"} << true;
    QTest::newRow("other scripts that differ in case") << QStringList{"\u0436", "\u0416"} << true;
    QTest::newRow("a file that is a folder too") << QStringList{"a/b/c", "q", "a/b"} << true;
    QTest::newRow("a file that is a folder in another case") << QStringList{"A/b", "a"} << true;
    QTest::newRow("nothing") << QStringList{} << false;
}

void TestEntryName::findsCollisions()
{
    QFETCH(QStringList, paths);
    PathSet set(upperCase);
    std::size_t total = 0;
    for (const QString &path : paths) {
        total += static_cast<std::size_t>(path.size());
    }
    QVERIFY(set.allocate(static_cast<std::size_t>(paths.size()), total));
    for (QString path : paths) {
        const bool folder = path.endsWith(u'/');
        path.chop(folder ? 1 : 0);
        set.add(units(path), static_cast<std::size_t>(path.size()), folder);
    }
    QTEST(set.collides(), "collide");
}

QTEST_APPLESS_MAIN(TestEntryName)
#include "tst_entryname.moc"
