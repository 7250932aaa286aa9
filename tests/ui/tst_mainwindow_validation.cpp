// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/support/waiting.h"
#include "tests/ui/support/modalanswer.h"
#include "tests/ui/support/windowfixture.h"

// The inputs that the window checks before a job, and those that only the job checks.
class TestMainWindowValidation : public QObject
{
    Q_OBJECT

private slots:
    void validationNamesTheFirstProblem_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("program");
        QTest::addColumn<QString>("output");
        QTest::addColumn<QString>("warning");

        const QString noFolder = "请选择源文件夹！";
        const QString noProgram = "请选择主程序！";
        const QString noOutput = "输出路径必须是一个目录（例如 C:/Output）！";
        QTest::newRow("nothing given") << ""
                                       << ""
                                       << "" << noFolder;
        QTest::newRow("no folder") << ""
                                   << "my.exe"
                                   << "output" << noFolder;
        QTest::newRow("a blank is a folder's name") << " "
                                                    << ""
                                                    << "" << noProgram;
        QTest::newRow("no program, and an output that is none") << "any"
                                                                << ""
                                                                << "" << noProgram;
        QTest::newRow("no output") << "any"
                                   << "my.exe"
                                   << "" << noOutput;
        QTest::newRow("missing output beside an existing one") << "any"
                                                               << "my.exe"
                                                               << "output/missing" << noOutput;
        QTest::newRow("output is a file") << "any"
                                          << "my.exe"
                                          << "source/my.exe" << noOutput;
    }

    void validationNamesTheFirstProblem()
    {
        QFETCH(QString, folder);
        QFETCH(QString, program);
        QFETCH(QString, output);
        WindowFixture fixture;
        fixture.open();
        fixture.type("folderLineEdit", folder);
        if (!program.isEmpty()) {
            fixture.programs()->addItem(program);
        }
        fixture.type("outputLineEdit", output.isEmpty() ? output : fixture.temp.filePath(output));
        QFETCH(QString, warning);
        QCOMPARE(answerBox([&] { fixture.click("startButton"); }),
                 (SeenBox{"警告", warning, QMessageBox::Warning, QMessageBox::Ok,
                          fixture.window.get()}));
    }

    void onlyTheFieldsAreLookedAt()
    {
        WindowFixture fixture;
        fixture.open();
        fixture.type("folderLineEdit", fixture.temp.filePath("missing"));
        fixture.programs()->addItem("missing.exe");
        fixture.type("outputLineEdit", fixture.outputFolder());
        fixture.find<QLineEdit>("iconLineEdit")->setText("no icon");
        QCOMPARE(answerBox([&] { fixture.click("startButton"); }), SeenBox());
        WAIT_VERIFY(fixture.log().contains("错误：")); // the job has begun and logs this
        QVERIFY(!fixture.log().contains("输入验证失败"));
    }
};

QTEST_MAIN(TestMainWindowValidation)

#include "tst_mainwindow_validation.moc"
