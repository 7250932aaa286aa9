// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/glob.h"

#include <QTest>

class TestGlob : public QObject
{
    Q_OBJECT

private slots:
    void chooses_data();
    void chooses();
    void brokenPatternsAreRefused_data();
    void brokenPatternsAreRefused();
    void manyStarsCostLittle();
};

void TestGlob::chooses_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("isFolder");
    QTest::addColumn<bool>("isChosen");
    int number = 0;
    const auto row
        = [&number](const char *pattern, const char *path, bool isFolder, bool isChosen) {
              QTest::addRow("%d: %s and %s", ++number, pattern, path)
                  << QString::fromUtf8(pattern) << QString::fromUtf8(path) << isFolder << isChosen;
          };
    const bool file = false;
    const bool folder = true;
    row("*.pdb", "app.pdb", file, true);
    row("*.pdb", "a/b/app.pdb", file, true);
    row("*.pdb", "APP.PDB", file, true);
    row("*.PDB", "app.pdb", file, true);
    row("*.pdb", "app.pdbx", file, false);
    row("*.pdb", ".pdb", file, true);
    row("*.pdb", "symbols.pdb", folder, true);
    row(".git/", ".git", folder, true);
    row(".git/", "a/.git", folder, true);
    row(".git/", ".git", file, false);
    row(".git/", ".gitignore", folder, false);
    row("docs/*.md", "docs/a.md", file, true);
    row("docs/*.md", "docs/a/b.md", file, false);
    row("docs/*.md", "a/docs/b.md", file, false);
    row("docs\\*.md", "docs/a.md", file, true);
    row("/readme.txt", "readme.txt", file, true);
    row("/readme.txt", "a/readme.txt", file, false);
    row("docs/build/", "docs/build", folder, true);
    row("docs/build/", "a/docs/build", folder, false);
    row("docs/**/*.md", "docs/a.md", file, true);
    row("docs/**/*.md", "docs/a/b/c.md", file, true);
    row("docs/**/*.md", "other/a.md", file, false);
    row("**/tests/", "tests", folder, true);
    row("**/tests/", "a/b/tests", folder, true);
    row("docs/**", "docs/a/b", file, true);
    row("docs/**", "docs", folder, false);
    row("**", "anything/at/all", file, true);
    row("a/**/b/**/c", "a/x/b/y/z/c", file, true);
    row("a/**/b/**/c", "a/x/y/c", file, false);
    row("?.txt", "a.txt", file, true);
    row("?.txt", "ab.txt", file, false);
    row("?.txt", ".txt", file, false);
    row("[a-c].txt", "b.txt", file, true);
    row("[a-c].txt", "B.txt", file, true);
    row("[a-c].txt", "d.txt", file, false);
    row("[!a-c].txt", "d.txt", file, true);
    row("[!a-c].txt", "B.txt", file, false);
    row("[]x].txt", "].txt", file, true);
    row("[a-].txt", "-.txt", file, true);
    row("[[]a.txt", "[a.txt", file, true);
    row("a*b*c", "aXbXbXc", file, true);
    row("a*b*c", "aXbXbX", file, false);
    row("文*.txt", "文件.txt", file, true);
    row("É*", "école", file, true);
    row("*", "a", file, true);
    row("*", "a/b", file, true);
    row("a b.txt", "a b.txt", file, true);
    row("!a", "!a", file, true);
}

void TestGlob::chooses()
{
    QFETCH(const QString, pattern);
    QFETCH(const QString, path);
    QFETCH(const bool, isFolder);
    const auto glob = Glob::parse(pattern);
    QVERIFY(std::holds_alternative<Glob>(glob));
    QTEST(std::get<Glob>(glob).matches(path, isFolder), "isChosen");
}

void TestGlob::brokenPatternsAreRefused_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("reason");
    QTest::newRow("empty") << ""
                           << "an empty pattern excludes nothing";
    QTest::newRow("a slash only") << "/"
                                  << "the pattern / is broken: there is no name beside a /";
    QTest::newRow("two slashes") << "a//b"
                                 << "the pattern a//b is broken: there is no name beside a /";
    QTest::newRow("two at the end") << "a//"
                                    << "the pattern a// is broken: there is no name beside a /";
    QTest::newRow("out of the folder")
        << "../a"
        << "the pattern ../a is broken: paths begin at the folder to pack, without . and ..";
    QTest::newRow("from a dot")
        << "./a"
        << "the pattern ./a is broken: paths begin at the folder to pack, without . and ..";
    QTest::newRow("an open class") << "[a"
                                   << "the pattern [a is broken: a [ has no ]";
    QTest::newRow("an empty class") << "[]"
                                    << "the pattern [] is broken: a [ has no ]";
    QTest::newRow("a class over a slash") << "[a/b]"
                                          << "the pattern [a/b] is broken: a [ has no ]";
    QTest::newRow("a range backwards")
        << "[z-a]"
        << "the pattern [z-a] is broken: the range z-a is in the wrong order";
    QTest::newRow("two stars in a name")
        << "a**b"
        << "the pattern a**b is broken: ** must stand alone between two /";
    QTest::newRow("three stars") << "***"
                                 << "the pattern *** is broken: ** must stand alone between two /";
}

void TestGlob::brokenPatternsAreRefused()
{
    QFETCH(const QString, pattern);
    const auto glob = Glob::parse(pattern);
    QVERIFY(std::holds_alternative<Message>(glob));
    QTEST(textOf(std::get<Message>(glob)), "reason");
}

// With a naive algorithm, each star multiplies the time by the length of the name.
void TestGlob::manyStarsCostLittle()
{
    const auto glob = Glob::parse(QString("*a").repeated(60) + "b");
    QVERIFY(std::holds_alternative<Glob>(glob));
    QVERIFY(!std::get<Glob>(glob).matches(QString(250, 'a'), false));
}

QTEST_GUILESS_MAIN(TestGlob)
#include "tst_glob.moc"
