// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/nativepath.h"

#include "tests/helpers/pe/nativepathof.h"
#include "tests/support/testfiles.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

class TestNativePath : public QObject
{
    Q_OBJECT

private slots:
    void messagesHaveThePathInUtf8()
    {
        const QString path = QString::fromUtf8("/文件夹/é 🙂.exe");
        QCOMPARE(QByteArray::fromStdString(pe::utf8Of(nativePathOf(path))), path.toUtf8());
        QVERIFY(pe::utf8Of({}).empty());
    }

    void theFolderOfAFile_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("folder");
        QTest::newRow("a name") << "a.exe"
                                << "";
        QTest::newRow("below the root") << "/a.exe"
                                        << "/";
        QTest::newRow("relative") << "b/a.exe"
                                  << "b/";
        QTest::newRow("absolute") << "/c d/b/a.exe"
                                  << "/c d/b/";
#ifdef Q_OS_WIN
        QTest::newRow("a drive") << "C:\\b\\a.exe"
                                 << "C:\\b\\";
        QTest::newRow("both separators") << "C:/b\\c/a.exe"
                                         << "C:/b\\c/";
#endif
    }
    void theFolderOfAFile()
    {
        QFETCH(QString, path);
        QFETCH(QString, folder);
        QVERIFY(pe::folderOf(nativePathOf(path)) == nativePathOf(folder));
    }

    void twoPathsOfOneFile()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath("a"), "x") && writeFile(dir.filePath("b"), "x"));
        const auto a = nativePathOf(dir.filePath("a"));
        QVERIFY(pe::isSameFile(a, a));
        QVERIFY(pe::isSameFile(a, nativePathOf(dir.path() + "/./a")));
        QVERIFY(!pe::isSameFile(a, nativePathOf(dir.filePath("b"))));
        QVERIFY(!pe::isSameFile(a, nativePathOf(dir.filePath("missing"))));
        QVERIFY(!pe::isSameFile({}, a));
    }

#ifdef Q_OS_WIN
    void extendedPaths_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("extended");
        QTest::newRow("a drive") << "C:\\a b\\c.exe"
                                 << "\\\\?\\C:\\a b\\c.exe";
        QTest::newRow("slashes") << "C:/a/c.exe"
                                 << "\\\\?\\C:\\a\\c.exe";
        QTest::newRow("dots") << "C:\\a\\..\\.\\c.exe"
                              << "\\\\?\\C:\\c.exe";
        QTest::newRow("a server") << "\\\\server\\share\\c.exe"
                                  << "\\\\?\\UNC\\server\\share\\c.exe";
        QTest::newRow("a server, with slashes") << "//server/share/c.exe"
                                                << "\\\\?\\UNC\\server\\share\\c.exe";
        QTest::newRow("extended already") << "\\\\?\\C:\\c.exe"
                                          << "\\\\?\\C:\\c.exe";
        QTest::newRow("a device") << "NUL"
                                  << "\\\\.\\NUL";
        const QString longName = QString(200, 'n') + '\\' + QString(200, 'm');
        QTest::newRow("long") << "C:\\" + longName << "\\\\?\\C:\\" + longName;
    }
    void extendedPaths()
    {
        QFETCH(QString, path);
        QTEST(QString::fromStdWString(pe::extendedPath(path.toStdWString())), "extended");
    }
#else
    void aLinkIsFollowed()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath("file"), "x"));
        QVERIFY(QFile::link(dir.filePath("file"), dir.filePath("link")));
        const auto canonical = nativePathOf(QFileInfo(dir.filePath("file")).canonicalFilePath());
        QCOMPARE(pe::withoutLink(nativePathOf(dir.filePath("link"))), canonical);
        QCOMPARE(pe::withoutLink(nativePathOf(dir.filePath("file"))), canonical);
        const auto missing = nativePathOf(dir.filePath("missing"));
        QCOMPARE(pe::withoutLink(missing), missing);
    }
#endif
};

QTEST_APPLESS_MAIN(TestNativePath)
#include "tst_nativepath.moc"
