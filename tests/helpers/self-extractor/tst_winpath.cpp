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
    void findsTheFolder_data();
    void findsTheFolder();
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

QTEST_APPLESS_MAIN(TestWinPath)
#include "tst_winpath.moc"
