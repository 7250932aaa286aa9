// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "app/stylesheet.h"
#include "tests/support/builtfile.h"
#include "tests/support/waiting.h"
#include "tests/support/windowsprogram.h"
#include "tests/ui/support/modalanswer.h"
#include "tests/ui/support/windowfixture.h"

#include <QProcess>

// A whole job through the window, with the real helper programs. Wine starts the product.
class TestWindowJob : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(loadStyleSheet(*qApp)); }

    void packsWhatIsChosenInTheDialogs_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("output");
        QTest::newRow("plain names") << "app"
                                     << "out";
        QTest::newRow("blanks, Chinese and emoji") << "我的 应用 🦅"
                                                   << "输出 目录 🦅";
    }

    void packsWhatIsChosenInTheDialogs()
    {
        QFETCH(QString, folder);
        QFETCH(QString, output);
        WindowFixture fixture;
        fixture.platform.reset();
        const QString source = fixture.temp.filePath(folder);
        const QString target = fixture.temp.filePath(output);
        QVERIFY(QDir().mkpath(target));
        copyExample(source);

        fixture.open();
        chooseInDialogs(fixture, source, target);
        QList<int> progress;
        connect(fixture.find<QProgressBar>("progressBar"), &QProgressBar::valueChanged, this,
                [&progress](int value) { progress.append(value); });
        const auto boxes = answerBoxes([&] { startAndWait(fixture); }, {QMessageBox::Ok});

        QVERIFY2(boxes.size() == 1, qPrintable(fixture.log()));
        QCOMPARE(boxes[0].text, "便携应用创建成功！");
        QVERIFY(!progress.isEmpty());
        QCOMPARE(progress.last(), 100);
        for (const char *line : {"压缩包创建成功", "图标替换成功！", "成功创建便携应用！"}) {
            QVERIFY2(fixture.log().contains(line), qPrintable(fixture.log()));
        }

        const QString product = target + "/hello.exe";
        const QString said = startProduct(product, {"one", "two three", "--exit", "42"}, 42);
        QVERIFY2(said.contains("Argument 1: one\r\nArgument 2: two three\r\n"), qPrintable(said));
        QVERIFY2(said.contains("This line comes from greeting.txt"), qPrintable(said));
    }

private:
    static void copyExample(const QString &folder)
    {
        QVERIFY(QDir().mkpath(folder));
        const QDir example(builtFile(KESTRELPACK_HELLO_FOLDER));
        for (const QString &name : example.entryList(QDir::Files)) {
            QVERIFY(QFile::copy(example.filePath(name), folder + '/' + name));
        }
    }

    static void chooseInDialogs(const WindowFixture &fixture, const QString &source,
                                const QString &target)
    {
        answerFileDialog([&] { fixture.click("selectFolderButton"); }, source);
        QCOMPARE(fixture.text("folderLineEdit"), source);
        answerFileDialog([&] { fixture.click("mainExeButton"); }, source + "/hello.exe");
        QCOMPARE(fixture.programs()->currentText(), "hello.exe");
        answerFileDialog([&] { fixture.click("outputButton"); }, target);
        QCOMPARE(fixture.text("outputLineEdit"), target);
    }

    static void startAndWait(const WindowFixture &fixture)
    {
        fixture.click("startButton");
        WAIT_VERIFY(fixture.find<QPushButton>("startButton")->isEnabled()
                    && QApplication::activeModalWidget() == nullptr);
    }

    static QString startProduct(const QString &product, const QStringList &arguments,
                                int expectedCode)
    {
        QProcess process;
        startWindowsProgram(process, product, arguments);
        if (!process.waitForFinished(patience)) {
            process.kill();
            return "timed out";
        }
        const QString said = QString::fromUtf8(process.readAllStandardOutput());
        return process.exitCode() == expectedCode
            ? said
            : QStringLiteral("exit code %1: %2").arg(process.exitCode()).arg(said);
    }
};

QTEST_MAIN(TestWindowJob)

#include "tst_windowjob.moc"
