// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/winpath.h"

#include <QTest>

using namespace sfx;

namespace {

QString mapped(bool (*function)(const Text &, Text &), const QString &path)
{
    Text in;
    Text out;
    if (!in.append(reinterpret_cast<const char16_t *>(path.utf16())) || !function(in, out)) {
        return QStringLiteral("no memory");
    }
    return QString::fromUtf16(out.data(), static_cast<qsizetype>(out.size()));
}

} // namespace

class TestWinPath : public QObject
{
    Q_OBJECT

private slots:
    void extends_data();
    void extends();
    void knowsAbsolutePaths_data();
    void knowsAbsolutePaths();
    void findsTheFolder_data();
    void findsTheFolder();
    void takesPathsOfTheArchive();
    void findsTheName_data();
    void findsTheName();
    void shortens_data();
    void shortens();
    void seesPathsIntoAFolder_data();
    void seesPathsIntoAFolder();
};

void TestWinPath::extends_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("extended");
    QTest::newRow("a drive") << R"(C:\x\y)"
                             << R"(\\?\C:\x\y)";
    QTest::newRow("a share") << R"(\\server\share\x)"
                             << R"(\\?\UNC\server\share\x)";
    QTest::newRow("extended already") << R"(\\?\C:\x)"
                                      << R"(\\?\C:\x)";
}

void TestWinPath::extends()
{
    QFETCH(QString, path);
    QTEST(mapped(toExtendedPath, path), "extended");
}

void TestWinPath::knowsAbsolutePaths_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("isAbsolute");
    QTest::newRow("a drive") << R"(C:\x)" << true;
    QTest::newRow("a drive's root") << R"(C:\)" << true;
    QTest::newRow("a share") << R"(\\server\share)" << true;
    QTest::newRow("extended") << R"(\\?\C:\x)" << true;
    QTest::newRow("a drive's current folder") << "C:" << false;
    QTest::newRow("in a drive's current folder") << "C:x" << false;
    QTest::newRow("on the current drive") << R"(\x)" << false;
    QTest::newRow("in the current folder") << "x" << false;
    QTest::newRow("with slashes") << "C:/x" << false;
    QTest::newRow("empty") << QString() << false;
}

void TestWinPath::knowsAbsolutePaths()
{
    QFETCH(QString, path);
    Text text;
    QVERIFY(text.append(reinterpret_cast<const char16_t *>(path.utf16()),
                        static_cast<std::size_t>(path.size())));
    QTEST(isAbsolutePath(text), "isAbsolute");
}

void TestWinPath::findsTheFolder_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("folder");
    QTest::newRow("a file in a folder") << R"(C:\x y\z.exe)"
                                        << R"(C:\x y)";
    QTest::newRow("a file in a drive's root") << R"(C:\z.exe)"
                                              << R"(C:\)";
    QTest::newRow("a file on a share") << R"(\\server\share\z.exe)"
                                       << R"(\\server\share)";
    QTest::newRow("an extended root") << R"(\\?\C:\z.exe)"
                                      << R"(\\?\C:\)";
    QTest::newRow("no folder") << R"(z.exe)"
                               << "";
}

void TestWinPath::findsTheFolder()
{
    QFETCH(QString, path);
    QTEST(mapped(folderOf, path), "folder");
}

void TestWinPath::takesPathsOfTheArchive()
{
    Text path;
    QVERIFY(path.append(u"C:/x\\"));
    QVERIFY(appendArchivePath(path, u"bin/a/b.exe/", 11));
    QCOMPARE(QString::fromUtf16(path.data()), QStringLiteral("C:/x\\bin\\a\\b.exe"));
}

void TestWinPath::findsTheName_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::newRow("a file in a folder") << R"(C:\x y\z 1.exe)"
                                        << "z 1.exe";
    QTest::newRow("slashes") << "C:/x y/z.exe"
                             << "z.exe";
    QTest::newRow("no folder") << "z.exe"
                               << "z.exe";
    QTest::newRow("no name") << R"(C:\x\)"
                             << "";
    QTest::newRow("nothing") << ""
                             << "";
}

void TestWinPath::findsTheName()
{
    QFETCH(QString, path);
    Text text;
    QVERIFY(text.append(reinterpret_cast<const char16_t *>(path.utf16())));
    QTEST(QString::fromUtf16(fileNameOf(text)), "name");
}

void TestWinPath::shortens_data()
{
    QTest::addColumn<QString>("extended");
    QTest::addColumn<QString>("path");
    QTest::newRow("a drive") << R"(\\?\C:\x\y)"
                             << R"(C:\x\y)";
    QTest::newRow("a share") << R"(\\?\UNC\server\share\x)"
                             << R"(\\server\share\x)";
    QTest::newRow("a volume without a letter") << R"(\\?\Volume{1a}\x)"
                                               << R"(\\?\Volume{1a}\x)";
    QTest::newRow("a device") << R"(\\?\GLOBALROOT\Device\x)"
                              << R"(\\?\GLOBALROOT\Device\x)";
    QTest::newRow("a drive's root") << R"(\\?\C:\)"
                                    << R"(C:\)";
    QTest::newRow("a plain path") << R"(C:\x)"
                                  << R"(C:\x)";
    QTest::newRow("a plain share") << R"(\\server\share)"
                                   << R"(\\server\share)";
}

void TestWinPath::shortens()
{
    QFETCH(QString, extended);
    QTEST(mapped(toPlainPath, extended), "path");
}

void TestWinPath::seesPathsIntoAFolder_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("pointsInto");
    QTest::newRow("a program in it") << R"(C:\Temp\kp-12ab\app\main.exe)" << true;
    QTest::newRow("in another case") << R"(c:\temp\KP-12AB\APP\MAIN.EXE)" << true;
    QTest::newRow("in the extended form") << R"(\\?\C:\Temp\kp-12ab\main.exe)" << true;
    QTest::newRow("with the device's name")
        << R"(\Device\HarddiskVolume3\Temp\kp-12ab\main.exe)" << true;
    QTest::newRow("by a folder's short name") << R"(C:\TEMPOR~1\kp-12ab\main.exe)" << true;
    QTest::newRow("on the share of a mapped drive") << R"(\\server\t\kp-12ab\main.exe)" << true;
    QTest::newRow("a sibling with a longer name") << R"(C:\Temp\kp-12ab0\main.exe)" << false;
    QTest::newRow("a sibling with a longer beginning") << R"(C:\Temp\xkp-12ab\main.exe)" << false;
    QTest::newRow("another one of the kind") << R"(C:\Temp\kp-12ac\main.exe)" << false;
    QTest::newRow("its lock file") << R"(C:\Temp\kp-12ab.lock)" << false;
    QTest::newRow("a browser") << R"(C:\Program Files\b\browser.exe)" << false;
    QTest::newRow("a browser with a page on the net")
        << R"("C:\b\browser.exe" -url https://example.org/kp)" << false;
    QTest::newRow("an interpreter with a file in it")
        << R"("C:\Java\javaw.exe" -jar "C:\Temp\kp-12ab\app\a.jar")" << true;
    QTest::newRow("an interpreter with slashes")
        << "javaw.exe -cp C:/Temp/kp-12ab/a.jar;C:/Temp/kp-12ab/b.jar" << true;
    QTest::newRow("a program with the folder itself") << R"(list.exe C:\Temp\kp-12ab -x)" << true;
    QTest::newRow("the folder in quotes") << R"(list.exe "C:\Temp\kp-12ab")" << true;
    QTest::newRow("the folder at the end") << R"(list.exe C:\Temp\kp-12ab)" << true;
    QTest::newRow("nothing") << "" << false;
}

void TestWinPath::seesPathsIntoAFolder()
{
    QFETCH(QString, text);
    Text units;
    Text folder;
    QVERIFY(units.append(reinterpret_cast<const char16_t *>(text.utf16())));
    QVERIFY(folder.append(uR"(C:\Temp\kp-12ab)"));
    QTEST(sfx::pointsInto(units, folder), "pointsInto");
}

QTEST_APPLESS_MAIN(TestWinPath)
#include "tst_winpath.moc"
