// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/blockwriter.h"

#include <QTest>

class TestBlockWriter : public QObject
{
    Q_OBJECT

private slots:
    void blockOfAProgramWithTwoDots()
    {
        QCOMPARE(configurationBlock("my", "my.tool.exe").toUtf8(),
                 QByteArray(";!@Install@!UTF-8!\n"
                            "Title=\"my Portable\"\n"
                            "BeginPrompt=\"确定要运行 my 便携版吗？\"\n"
                            "Progress=\"yes\"\n"
                            "RunProgram=\"my.tool.exe\"\n"
                            "InstallPath=\"%%T\\my\"\n"
                            "GUIMode=\"2\"\n"
                            "Silent=\"0\"\n"
                            "Overwrite=\"1\"\n"
                            ";!@InstallEnd@!\n"));
    }

    void sizeIsThatOfTheTemplateAndItsFillings_data()
    {
        QTest::addColumn<QString>("baseName");
        QTest::addColumn<QString>("mainExeName");
        QTest::newRow("ASCII") << "tool"
                               << "tool.exe";
        QTest::newRow("blanks and Chinese") << "我的 工具"
                                            << "我的 工具.exe";
        QTest::newRow("emoji") << "🚀"
                               << "🚀.exe";
        QTest::newRow("empty") << ""
                               << "";
    }
    void sizeIsThatOfTheTemplateAndItsFillings()
    {
        QFETCH(QString, baseName);
        QFETCH(QString, mainExeName);
        // 193 bytes, minus four placeholders of two bytes each: %1 twice, %2 and %3.
        const qsizetype expected = 193 - 8 + 3 * baseName.toUtf8().size()
            + mainExeName.toUtf8().size();
        QCOMPARE(configurationBlock(baseName, mainExeName).toUtf8().size(), expected);
    }

    void noByteOrderMarkAndNoCarriageReturn()
    {
        const QByteArray block = configurationBlock("a", "a.exe").toUtf8();
        QVERIFY(block.startsWith(";!@"));
        QVERIFY(!block.contains('\r'));
        QCOMPARE(block.count('\n'), 10);
    }

    // The three placeholders are filled one after the other, so a placeholder in a name is filled
    // too.
    void aPlaceholderInANameIsFilledByTheNextFilling()
    {
        const QString block = configurationBlock("a%2", "b.exe");
        QVERIFY2(block.contains("Title=\"ab.exe Portable\""), qUtf8Printable(block));
        // Qt accepts every digit as a number, and fills the lowest number first.
        const QString superscript = configurationBlock(QStringLiteral(u"a%\u00b9"), "b.exe");
        QVERIFY2(superscript.contains("Title=\"ab.exe Portable\""), qUtf8Printable(superscript));
        QVERIFY2(configurationBlock("100%", "100%.exe").contains("RunProgram=\"100%.exe\""),
                 "a lone percent sign stays");
    }
};

QTEST_APPLESS_MAIN(TestBlockWriter)
#include "tst_blockwriter.moc"
