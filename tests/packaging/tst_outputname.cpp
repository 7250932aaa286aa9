// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/outputname.h"

#include <QTest>

class TestOutputName : public QObject
{
    Q_OBJECT

private slots:
    void outputPathOfAProgram_data()
    {
        QTest::addColumn<QString>("outputDir");
        QTest::addColumn<QString>("mainExeName");
        QTest::addColumn<QString>("path");
        QTest::newRow("plain") << "/out"
                               << "tool.exe"
                               << "/out/tool.exe";
        QTest::newRow("up to the first dot") << "/out"
                                             << "my.tool.exe"
                                             << "/out/my.exe";
        QTest::newRow("capital extension") << "/out"
                                           << "TOOL.EXE"
                                           << "/out/TOOL.exe";
        QTest::newRow("no extension") << "/out"
                                      << "tool"
                                      << "/out/tool.exe";
        QTest::newRow("blanks, Chinese and emoji") << "/out dir"
                                                   << "我的 工具🚀.exe"
                                                   << "/out dir/我的 工具🚀.exe";
        QTest::newRow("directory ends in a slash") << "/out/"
                                                   << "tool.exe"
                                                   << "/out/tool.exe";
        QTest::newRow("drive") << "D:/out"
                               << "tool.exe"
                               << "D:/out/tool.exe";
    }
    void outputPathOfAProgram()
    {
        QFETCH(QString, outputDir);
        QFETCH(QString, mainExeName);
        QTEST(outputPath(outputDir, mainExeName), "path");
    }
};

QTEST_APPLESS_MAIN(TestOutputName)
#include "tst_outputname.moc"
