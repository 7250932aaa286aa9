// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/logline.h"

#include "cli/console.h"

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
        QTest::newRow("icon too small") << "图标数据太小，至少需要6字节" << warning;
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
