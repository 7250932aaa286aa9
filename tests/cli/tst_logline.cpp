// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/logline.h"

#include "cli/console.h"
#include "tests/support/builtfile.h"
#include "tests/support/testfiles.h"

#include <QDir>
#include <QFile>
#include <QTest>

class TestLogLine : public QObject
{
    Q_OBJECT

private slots:
    void kind_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("kind");
        const int information = int(LogLineKind::Information);
        const int warning = int(LogLineKind::Warning);
        const int error = int(LogLineKind::Error);
        QTest::newRow("begin") << "开始创建便携应用..." << information;
        QTest::newRow("archiver's own words") << "37% 12 + 警告：.txt" << information;
        QTest::newRow("empty") << "" << information;
        QTest::newRow("block") << "配置内容:\n;!@Install@!UTF-8!\n" << information;
        QTest::newRow("icon size") << "图标验证通过 - 尺寸: 256x256" << information;
        QTest::newRow("end") << "成功创建便携应用！" << information;
        QTest::newRow("warning") << "警告：图标替换失败" << warning;
        QTest::newRow("icon too small") << "图标数据太小，至少需要6字节" << information;
        QTest::newRow("a program without an icon") << "警告：无法从EXE提取图标" << information;
        QTest::newRow("an icon that no job can show")
            << "警告：无法从EXE加载图标，可能需要重启资源管理器" << information;
        QTest::newRow("English warning") << "Warning: the icon could not be replaced" << warning;
        QTest::newRow("English error") << "Error: the output file cannot be created: a" << error;
        QTest::newRow("icon header") << "无效的ICO文件头" << warning;
        QTest::newRow("icon undecodable") << "无法将数据加载为ICO格式" << warning;
        QTest::newRow("error") << "错误：源文件夹不存在" << error;
        QTest::newRow("error's details") << "错误详情: no such file" << error;
        QTest::newRow("archiver's error") << "7z错误输出: \nno room" << error;
        QTest::newRow("nothing made") << "创建单文件失败" << error;
    }
    void kind()
    {
        QFETCH(QString, line);
        QTEST(int(kindOfLogLine(line)), "kind");
    }

    void theArchiversProgressIsTakenOut_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown");
        QTest::newRow("a line of the engine") << "主程序: 100% a\n  b"
                                              << "主程序: 100% a\n  b";
        QTest::newRow("a percentage") << " 12%"
                                      << "";
        QTest::newRow("a percentage and a name") << "12% 3 + a folder/a.txt"
                                                 << "";
        QTest::newRow("erased and written again")
            << "  0%\b\b\b\b    \b\b\b\b 12% 3 + a\b\b\b\b\b\b\b\b\b\b        \b\b\b\b\b\b\b\b 57% 4"
            << "";
        QTest::newRow("words after it was erased")
            << "  0%\b\b\b\b    \b\b\b\bFiles read from disk: 3"
            << "Files read from disk: 3";
        QTest::newRow("more backspaces than letters")
            << "tail\b\b\b\b\b\b\b\b        \b\b\b\b\b\b\b\b"
            << "";
        QTest::newRow("the scan") << "Scanning the drive:\n  0M Scan  /src/"
                                  << "Scanning the drive:";
        QTest::newRow("lines of Windows")
            << "Scanning the drive:\r\n  0%\b\b\b\b    \b\b\b\b\r\nEverything is Ok"
            << "Scanning the drive:\n\nEverything is Ok";
        QTest::newRow("a name that begins with a percentage") << "100%sure.txt"
                                                              << "100%sure.txt";
        QTest::newRow("empty") << ""
                               << "";
    }
    void theArchiversProgressIsTakenOut()
    {
        QFETCH(QString, text);
        QTEST(withoutProgress(text), "shown");
    }

    // The recorded output, cut anywhere, as it comes from a pipe.
    void noPieceOfTheRealOutputHasBackspaces()
    {
        const QString folder = builtFile(KESTRELPACK_TEST_DATA) + "/archiver";
        const QStringList names = QDir(folder).entryList(QDir::Files);
        QVERIFY(!names.isEmpty());
        for (const QString &name : names) {
            const QString output = QString::fromUtf8(readFile(folder + '/' + name));
            for (qsizetype at = 0; at < output.size(); at += 700) {
                const QString shown = withoutProgress(output.mid(at, 700).trimmed());
                QVERIFY2(!shown.contains('\b'), qPrintable(shown));
            }
            const QString whole = withoutProgress(output);
            QVERIFY2(!whole.contains('%') && whole.contains("Add new data"), qPrintable(whole));
        }
    }

    void progressBar_data()
    {
        QTest::addColumn<int>("percentage");
        QTest::addColumn<QString>("bar");
        const QString dots(40, '.');
        const QString hashes(40, '#');
        QTest::newRow("nothing") << 0 << '[' + dots + "]   0 %";
        QTest::newRow("half") << 50 << '[' + hashes.left(20) + dots.left(20) + "]  50 %";
        QTest::newRow("almost all is not all") << 99 << '[' + hashes.left(39) + ".]  99 %";
        QTest::newRow("all") << 100 << '[' + hashes + "] 100 %";
        QTest::newRow("more than all") << 1000 << '[' + hashes + "] 100 %";
        QTest::newRow("less than nothing") << -5 << '[' + dots + "]   0 %";
    }
    void progressBar()
    {
        QFETCH(int, percentage);
        QTEST(progressBarText(percentage), "bar");
    }

    // A console without the mode for escape sequences would show them.
    void aBarIsRemovedWithBlanks()
    {
        const QString blanks(progressBarText(100).size(), ' ');
        QCOMPARE(progressBarEraser(), '\r' + blanks + '\r');
    }
};

QTEST_APPLESS_MAIN(TestLogLine)
#include "tst_logline.moc"
