// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/e2e/productrun.h"
#include "tests/fakes/privatetemp.h"
#include "tests/helpers/pe/petest.h"
#include "tests/support/builtfile.h"
#include "tests/support/testfiles.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <memory>

// What a user of the terminal program sees of its products: a console program that shells wait for,
// which works where the user stands, with the main program's identity and icon.
class TestTerminalProduct : public QObject
{
    Q_OBJECT

private:
    static QString hello() { return builtFile(KESTRELPACK_HELLO_EXE); }

    // A folder with the example, and with the options' results beside it.
    bool makeSource(const QString &program)
    {
        const QString folder = m_temp->filePath("source");
        const QString path = folder + '/' + program;
        return QDir().mkpath(QFileInfo(path).path()) && QFile::copy(hello(), path)
            && writeFile(QFileInfo(path).path() + "/greeting.txt", "This is the example.\r\n");
    }

    ProgramRun pack(const QStringList &options) const
    {
        return runProgram(builtFile(KESTRELPACK_CLI),
                          QStringList{"-q", "--language", "en"} + options
                              + QStringList{m_temp->filePath("source")});
    }

    // Starts it in the folder `caller`, which is made.
    ProgramRun startIn(const QString &caller, const QString &program,
                       const QStringList &arguments = {}) const
    {
        QProcess process;
        QDir().mkpath(m_temp->filePath(caller));
        process.setWorkingDirectory(m_temp->filePath(caller));
        startWindowsProgram(process, program, arguments);
        return resultOf(process);
    }

    QJsonObject inspect(const QString &product) const
    {
        const ProgramRun run
            = runProgram(builtFile(KESTRELPACK_CLI), {"inspect", "--json", product});
        return QJsonDocument::fromJson(run.output.toUtf8()).object();
    }

    std::unique_ptr<PrivateTemp> m_temp;

private slots:
    void init() { m_temp = std::make_unique<PrivateTemp>(); }
    void cleanup()
    {
        m_temp.reset();
        QCOMPARE(unpackedFolders(), QStringList());
    }

    // A batch file goes on when the program has ended, and knows its exit code.
    void aBatchFileWaitsForIt()
    {
        QVERIFY(makeSource("app.exe"));
        const ProgramRun packed = pack({"-o", m_temp->filePath("out")});
        QCOMPARE(packed.errors + packed.output, QString());
        QVERIFY(writeFile(m_temp->filePath("out/run.bat"),
                          "@echo off\r\napp.exe --exit 42\r\necho after %errorlevel%\r\n"));
        const ProgramRun run = startIn("out", "cmd", {"/c", "run.bat"});
        QVERIFY2(run.output.contains("Argument 2: 42\r\nafter 42\r\n"), qPrintable(run.output));
    }

    void startsWithEveryProfile_data()
    {
        QTest::addColumn<QString>("profile");
        QTest::addColumn<QStringList>("methods");
        QTest::newRow("default") << "default" << QStringList({"LZMA", "BCJ"});
        QTest::newRow("fast start") << "fast-start" << QStringList({"BCJ", "Zstandard"});
        QTest::newRow("small") << "small" << QStringList({"LZMA", "BCJ2"});
    }
    void startsWithEveryProfile()
    {
        QFETCH(QString, profile);
        QFETCH(QStringList, methods);
        QVERIFY(makeSource("app.exe"));
        const QString product = m_temp->filePath("out/app.exe");
        QCOMPARE(pack({"-o", product, "--profile", profile}).errors, QString());
        const ProgramRun run = startIn("caller", product, {"--exit", "7"});
        QVERIFY2(run.output.contains("This is the example."), qPrintable(run.output + run.errors));
        QCOMPARE(run.exitCode, 7);
        QStringList found;
        for (const auto &method :
             inspect(product).value("archive").toObject().value("methods").toArray()) {
            found << method.toString();
        }
        found.sort();
        methods.sort();
        QCOMPARE(found, methods);
    }

    void worksWhereItIsTold_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QString>("expected"); // the end of its working folder
        QTest::newRow("a console program") << QStringList() << "\\caller";
        QTest::newRow("as a graphical one") << QStringList{"--console", "no"} << "\\app";
        QTest::newRow("the application's") << QStringList{"--cwd", "app"} << "\\app";
        QTest::newRow("the caller's")
            << QStringList{"--console", "no", "--cwd", "caller"} << "\\caller";
        QTest::newRow("the executable's") << QStringList{"--cwd", "exe"} << "\\out";
    }
    void worksWhereItIsTold()
    {
        QFETCH(QStringList, options);
        QFETCH(QString, expected);
        QVERIFY(makeSource("app.exe"));
        QCOMPARE(pack(QStringList{"-o", m_temp->filePath("out")} + options).errors, QString());
        const ProgramRun run = startIn("caller", m_temp->filePath("out/app.exe"));
        const QString folder = run.output.section("Folder: ", 1).section("\r\n", 0, 0);
        QVERIFY2(folder.endsWith(expected), qPrintable(run.output + run.errors));
        QCOMPARE(run.exitCode, 0);
    }

    void startsAProgramInASubfolderWithArguments()
    {
        QVERIFY(makeSource("bin/inner/tool.exe"));
        const QString product = m_temp->filePath("out/My tool 1.2.exe");
        const ProgramRun packed = pack({"-m", "bin\\inner\\tool.exe", "-o", product, "--arguments",
                                        "--first \"two words\"", "--title", "My tool"});
        QCOMPARE(packed.errors, QString());
        const ProgramRun run = startIn("caller", product, {"last", "--exit", "5"});
        QCOMPARE(run.exitCode, 5);
        QVERIFY2(run.output.contains("This is the example."), qPrintable(run.output));
        QVERIFY2(run.output.contains("Argument 1: --first\r\nArgument 2: two words\r\n"
                                     "Argument 3: last\r\n"),
                 qPrintable(run.output));
        const QJsonObject start = inspect(product).value("start").toObject();
        QCOMPARE(start.value("title").toString(), QString("My tool"));
        QCOMPARE(start.value("program").toString(), QString("bin/inner/tool.exe"));
    }

    void hasTheMainProgramsIdentity()
    {
        QVERIFY(makeSource("app.exe"));
        QVERIFY(QFile::remove(m_temp->filePath("source/app.exe")));
        QVERIFY(QFile::copy(builtFile(KESTRELPACK_IDENTIFIED), m_temp->filePath("source/app.exe")));
        const QString product = m_temp->filePath("out/Other name.exe");
        QCOMPARE(pack({"-o", product, "--set", "ProductName=My product"}).errors, QString());
        const auto identityOf = [this](const QString &path) {
            QMap<QString, QString> strings;
            const QJsonObject program = inspect(path).value("program").toObject();
            const QJsonObject identity = program.value("identity").toObject();
            for (auto each = identity.begin(); each != identity.end(); ++each) {
                strings.insert(each.key(), each.value().toString());
            }
            return strings;
        };
        const auto strings = identityOf(product);
        QCOMPARE(strings.value("ProductName"), QString("My product"));
        QCOMPARE(strings.value("OriginalFilename"), QString("Other name.exe"));
        QVERIFY(!strings.value("FileDescription").isEmpty());
        QVERIFY(!readFile(product).contains(QByteArray("P\0o\0r\0t\0a\0b\0l\0e\0 \0A\0p\0p", 23)));
    }

    void setsChineseText()
    {
        QVERIFY(makeSource("app.exe"));
        const QString product = m_temp->filePath("out/音乐.exe");
        QCOMPARE(pack({"-o", product, "--set", "ProductName=音乐 𠮷", "--set",
                       "FileDescription=一个 \"例子\"", "--title", "标题"})
                     .errors,
                 QString());
        const QJsonObject report = inspect(product);
        const QJsonObject identity
            = report.value("program").toObject().value("identity").toObject();
        QCOMPARE(identity.value("ProductName").toString(), QString("音乐 𠮷"));
        QCOMPARE(identity.value("FileDescription").toString(), QString("一个 \"例子\""));
        QCOMPARE(identity.value("OriginalFilename").toString(), QString("音乐.exe"));
        QCOMPARE(report.value("start").toObject().value("title").toString(), QString("标题"));
        QCOMPARE(startIn("caller", product, {"--exit", "3"}).exitCode, 3);
    }

    void leavesOutWhatItIsTold()
    {
        QVERIFY(makeSource("app.exe"));
        QCOMPARE(pack({"-o", m_temp->filePath("out"), "--exclude", "*.txt"}).errors, QString());
        const ProgramRun run = startIn("caller", m_temp->filePath("out/app.exe"));
        QVERIFY2(run.output.contains("greeting.txt is not here."), qPrintable(run.output));
    }

    void hasTheNameThatItIsGiven()
    {
        QVERIFY(makeSource("app.exe"));
        QCOMPARE(pack({"-o", m_temp->filePath("out"), "--name", "tool-3.4.6"}).errors, QString());
        const QString product = m_temp->filePath("out/tool-3.4.6.exe");
        QCOMPARE(startIn("caller", product, {"--exit", "4"}).exitCode, 4);
    }

    void readsItsOptionsFromAFile()
    {
        QVERIFY(makeSource("bin/tool.exe"));
        QVERIFY(makeSource("app.exe"));
        const QString config = m_temp->filePath("kestrelpack.ini");
        QVERIFY(writeFile(config,
                          "main = bin/tool.exe\noutput = out\nname = 工具\n"
                          "exclude = *.txt, *.pdb\narguments = --first two\n"
                          "cwd = exe\nset = ProductName=工具, CompanyName=Example\n"));
        QVERIFY(writeFile(m_temp->filePath("source/a.pdb"), "left out"));
        QCOMPARE(pack({"--config", config}).errors, QString());
        const QString product = m_temp->filePath("out/工具.exe");
        const ProgramRun run = startIn("caller", product, {"last", "--exit", "6"});
        QCOMPARE(run.exitCode, 6);
        QVERIFY2(run.output.contains("greeting.txt is not here."), qPrintable(run.output));
        QVERIFY2(run.output.contains("Argument 1: --first\r\nArgument 2: two\r\n"
                                     "Argument 3: last\r\n"),
                 qPrintable(run.output));
        const QString folder = run.output.section("Folder: ", 1).section("\r\n", 0, 0);
        QVERIFY2(folder.endsWith("\\out"), qPrintable(folder));
        const QJsonObject identity
            = inspect(product).value("program").toObject().value("identity").toObject();
        QCOMPARE(identity.value("ProductName").toString(), QString("工具"));
        QCOMPARE(identity.value("CompanyName").toString(), QString("Example"));
    }

    void aDamagedSilentOneStartsNothing()
    {
        QVERIFY(makeSource("app.exe"));
        const QString product = m_temp->filePath("out/app.exe");
        QCOMPARE(pack({"-o", product, "--console", "no", "--silent", "-l", "store"}).errors,
                 QString());
        QVERIFY(inspect(product).value("start").toObject().value("silent").toBool());
        QByteArray bytes = readFile(product);
        const qsizetype at = bytes.lastIndexOf("This is the example.");
        QVERIFY(at > 0);
        bytes[at] = 't';
        QVERIFY(writeFile(product, bytes));
        const ProgramRun run = startIn("caller", product);
        QCOMPARE(run.exitCode & 0xff, 201);
        QCOMPARE(run.output, QString());
        QVERIFY(!run.errors.isEmpty()); // in the language of the system
    }

    // As it is in the main program, every image in its own form.
    void hasTheWholeIcon()
    {
        QVERIFY(makeSource("app.exe"));
        const auto imagesOf = [](const QString &path) {
            QList<QByteArray> images;
            const auto resources = petest::lookAt(readFile(path)).resources;
            for (auto each = resources.begin(); each != resources.end(); ++each) {
                if (each.key().startsWith("3/")) {
                    images.append(each.value().content);
                }
            }
            return images;
        };
        QCOMPARE(pack({"-o", m_temp->filePath("out")}).errors, QString());
        const QList<QByteArray> own = imagesOf(m_temp->filePath("source/app.exe"));
        const QList<QByteArray> images = imagesOf(m_temp->filePath("out/app.exe"));
        QVERIFY(own.size() > 1);
        QCOMPARE(images, own);
        QCOMPARE(pack({"-o", m_temp->filePath("none"), "--icon", "none"}).errors, QString());
        QCOMPARE(imagesOf(m_temp->filePath("none/app.exe")), QList<QByteArray>());
    }
};

QTEST_GUILESS_MAIN(TestTerminalProduct)
#include "tst_terminalproduct.moc"
