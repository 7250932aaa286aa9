// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/inputcheck.h"

#include "cli/preparejob.h"

#include "tests/fakes/privatetemp.h"
#include "tests/support/onwindows.h"
#include "tests/support/testfiles.h"

#include <QTemporaryFile>
#include <QTest>

// Paths in the rows begin with "@", which stands for the test's folder. tst_cli calls the same
// check and shows the messages that the user sees.
class TestInputCheck : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QDir root(m_root.path());
        for (const char *folder : {"app/data", "app2", "several", "programless", "app/.hidden"}) {
            QVERIFY(root.mkpath(folder));
        }
        for (const char *file :
             {"app/my.tool.exe", "app/readme.txt", "app/data/inner.exe", "app2/UPPER.EXE",
              "several/a.exe", "several/b.exe", "programless/a.exe.txt", "a file"}) {
            QVERIFY(writeFile(m_root.filePath(file), "content"));
        }
    }

    void init() { QVERIFY(QDir(m_root.path()).mkpath("out")); }
    void cleanup() { QVERIFY(QDir(m_root.filePath("out")).removeRecursively()); }

    void accepted_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("main");
        QTest::addColumn<QString>("output");
        QTest::addColumn<QString>("summary"); // folder, main program, output
        const QString usual = "@/app, my.tool.exe, @/out";
        QTest::newRow("the only program is found") << "@/app"
                                                   << ""
                                                   << "@/out" << usual;
        QTest::newRow("its ending in capitals") << "@/app2"
                                                << ""
                                                << "@/out"
                                                << "@/app2, UPPER.EXE, @/out";
        QTest::newRow("one of several by its name") << "@/several"
                                                    << "b.exe"
                                                    << "@/out"
                                                    << "@/several, b.exe, @/out";
        QTest::newRow("a program by a path into the folder") << "@/app"
                                                             << "@/app/my.tool.exe"
                                                             << "@/out" << usual;
        QTest::newRow("a program by a roundabout path") << "@/app"
                                                        << "@/app/data/../my.tool.exe"
                                                        << "@/out" << usual;
        QTest::newRow("a folder with a separator at its end") << "@/app/"
                                                              << ""
                                                              << "@/out/" << usual;
        QTest::newRow("dots in the paths") << "@/app/./data/.."
                                           << ""
                                           << "@/app/../out" << usual;
        QTest::newRow("an output directory that is yet to be made")
            << "@/app"
            << ""
            << "@/out/new/one"
            << "@/app, my.tool.exe, @/out/new/one";
        QTest::newRow("an output directory whose name begins with the folder's")
            << "@/app"
            << ""
            << "@/app2"
            << "@/app, my.tool.exe, @/app2";
        QTest::newRow("the output directory around the folder") << "@/app"
                                                                << ""
                                                                << "@"
                                                                << "@/app, my.tool.exe, @";
    }
    void accepted()
    {
        QFETCH(QString, folder);
        QFETCH(QString, main);
        QFETCH(QString, output);
        PackOptions line;
        line.folder = here(folder);
        line.mainProgram = here(main);
        line.output = here(output);
        const auto prepared = prepareJob(line);
        QVERIFY2(std::holds_alternative<PreparedJob>(prepared), qPrintable(messageOf(prepared)));
        const auto &job = std::get<PreparedJob>(prepared).job;
        QFETCH(QString, summary);
        QCOMPARE(QStringList({job.folderPath, job.mainExeName, job.outputDir}).join(", "),
                 here(summary));
        QCOMPARE(job.archivePath, QString());
        QVERIFY2(!QDir(here("@/out/new")).exists(), "the output directory was created too early");
        QVERIFY(!makeOutputDirectory(std::get<PreparedJob>(prepared).product));
        QVERIFY(QDir(job.outputDir).exists());
    }

    void theMainProgramMayBeInAFolderOfTheFolder_data()
    {
        QTest::addColumn<QString>("main");
        QTest::addColumn<QString>("found"); // or the message of the refusal
        QTest::newRow("with a slash") << "bin/deep/app.exe"
                                      << "bin/deep/app.exe";
        QTest::newRow("with backslashes") << "bin\\deep\\app.exe"
                                          << "bin/deep/app.exe";
        QTest::newRow("with dots") << "./bin/../bin/deep/app.exe"
                                   << "bin/deep/app.exe";
        QTest::newRow("by its whole path") << "@/app/bin/deep/app.exe"
                                           << "bin/deep/app.exe";
        QTest::newRow("missing") << "bin/app.exe"
                                 << "the folder @/app contains no file bin/app.exe";
        QTest::newRow("outside")
            << "../several/a.exe"
            << "the main program ../several/a.exe is not inside the folder @/app";
        QTest::newRow("no program") << "bin/deep/readme.txt"
                                    << "the main program bin/deep/readme.txt is not an .exe file";
        QTest::newRow("in a folder with the name of a device")
            << "con/app.exe"
            << "con cannot be packed: on Windows that is the name of a device";
    }
    void theMainProgramMayBeInAFolderOfTheFolder()
    {
        QFETCH(QString, main);
        if (onWindows && main.startsWith("con/")) {
            QSKIP("there are no such names here");
        }
        for (const char *name : {"bin/deep/app.exe", "bin/deep/readme.txt", "con/app.exe"}) {
            const QString path = here(QStringLiteral("@/app/") + name);
            if (!onWindows || !path.contains("/con/")) {
                QVERIFY(QDir().mkpath(QFileInfo(path).path()) && writeFile(path, "content"));
            }
        }
        PackOptions line = usualLine();
        line.mainProgram = here(main);
        const auto checked = checkInputs(line);
        const auto *inputs = std::get_if<CheckedInputs>(&checked);
        QFETCH(QString, found);
        QCOMPARE(inputs ? inputs->mainProgram : messageOf(checked), here(found));
    }

    void theProduct_data()
    {
        QTest::addColumn<QString>("output");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("product"); // or the message of the refusal
        QTest::newRow("a folder") << "@/out"
                                  << ""
                                  << "@/out/my.exe";
        QTest::newRow("a folder that is missing") << "@/out/new.folder"
                                                  << ""
                                                  << "@/out/new.folder/my.exe";
        QTest::newRow("a file") << "@/out/other.exe"
                                << ""
                                << "@/out/other.exe";
        QTest::newRow("a file, in capitals") << "@/out/other.EXE"
                                             << ""
                                             << "@/out/other.EXE";
        QTest::newRow("a folder with the ending of a file") << "@/folder.exe"
                                                            << ""
                                                            << "@/folder.exe/my.exe";
        QTest::newRow("a name") << "@/out"
                                << "app-3.4.6.exe"
                                << "@/out/app-3.4.6.exe";
        QTest::newRow("a file and the same name") << "@/out/a.exe"
                                                  << "a.exe"
                                                  << "@/out/a.exe";
        QTest::newRow("a file and another name")
            << "@/out/a.exe"
            << "b.exe"
            << "--name b.exe and --output @/out/a.exe contradict each other";
        for (const char *name : {"a/b.exe", "a\\b.exe", "a:b.exe", "con.exe", "nul.tool.exe",
                                 ".exe", "a?.exe", " .exe"}) {
            QTest::addRow("the name %s", name)
                << "@/out" << name
                << QString("the executable cannot be named %1: Windows does not allow that name")
                       .arg(name);
        }
    }
    void theProduct()
    {
        QFETCH(QString, output);
        QFETCH(QString, name);
        QFETCH(QString, product);
        QVERIFY(QDir().mkpath(here("@/folder.exe")));
        PackOptions line = usualLine();
        line.output = here(output);
        line.name = name;
        const auto checked = checkInputs(line);
        const auto *inputs = std::get_if<CheckedInputs>(&checked);
        QCOMPARE(inputs ? inputs->product : messageOf(checked), here(product));
    }

    void theWordsForTheArchiver_data()
    {
        QTest::addColumn<int>("levelIndex");
        QTest::addColumn<int>("methodIndex");
        QTest::addColumn<Profile>("profile");
        QTest::addColumn<QString>("words");
        const PackOptions defaults;
        QTest::newRow("without options")
            << defaults.levelIndex << defaults.methodIndex << defaults.profile << "5 LZMA 16M";
        QTest::newRow("store") << 0 << 1 << Profile::Default << "0 Copy 16M";
        QTest::newRow("ultra, LZMA2") << 5 << 1 << Profile::Default << "9 LZMA2:c=256m 16M";
        QTest::newRow("a fast start") << 3 << 0 << Profile::FastStart << "5 ZSTD 16M";
        QTest::newRow("small") << 5 << 0 << Profile::Small << "9 LZMA 16M";
    }
    void theWordsForTheArchiver()
    {
        PackOptions line = usualLine();
        QFETCH(int, levelIndex);
        QFETCH(int, methodIndex);
        QFETCH(Profile, profile);
        line.profile = profile;
        line.levelIndex = levelIndex;
        line.methodIndex = methodIndex;
        line.folder = m_root.filePath("app2");
        line.mainProgram = "UPPER.EXE";
        const auto prepared = prepareJob(line);
        QVERIFY2(std::holds_alternative<PreparedJob>(prepared), qPrintable(messageOf(prepared)));
        const auto &job = std::get<PreparedJob>(prepared).job;
        QTEST(QStringList({job.compressionLevel, job.compressionMethod, job.dictionarySize})
                  .join(' '),
              "words");
    }

    void theIconsPathBecomesAbsolute()
    {
        PackOptions line = usualLine();
        QCOMPARE(std::get<CheckedInputs>(checkInputs(line)).icon, QString());
        QTemporaryFile icon("icon-XXXXXX.ico"); // in the working directory
        QVERIFY(icon.open());
        line.iconPath = QFileInfo(icon).fileName();
        const auto checked = checkInputs(line);
        QVERIFY2(std::holds_alternative<CheckedInputs>(checked), qPrintable(messageOf(checked)));
        QCOMPARE(std::get<CheckedInputs>(checked).icon, QDir::current().filePath(line.iconPath));
    }

    void refused_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("main");
        QTest::addColumn<QString>("icon");
        QTest::addColumn<QString>("output");
        QTest::addColumn<QString>("message");
        const QString none;
        QTest::newRow("a program in a folder below does not count")
            << "@" << none << none << "@/out/new"
            << "the folder @ contains no .exe file";
        QTest::newRow("an ending behind .exe") << "@/programless" << none << none << "@/out/new"
                                               << "the folder @/programless contains no .exe file";
        QTest::newRow("a folder as the main program") << "@/app"
                                                      << "data" << none << "@/out/new"
                                                      << "the folder @/app contains no file data";
        QTest::newRow("a path to the same name elsewhere")
            << "@/several"
            << "@/app/my.tool.exe" << none << "@/out/new"
            << "the main program @/app/my.tool.exe is not inside the folder @/several";
        QTest::newRow("a folder as the icon") << "@/app" << none << "@/several"
                                              << "@/out/new"
                                              << "the icon file @/several cannot be read";
        QTest::newRow("the folder itself, by another path")
            << "@/app" << none << none << "@/several/../app/data/.."
            << "the output directory @/several/../app/data/.. is inside the folder to pack";
        QTest::newRow("a hidden folder in the folder")
            << "@/app" << none << none << "@/app/.hidden"
            << "the output directory @/app/.hidden is inside the folder to pack";
        QTest::newRow("a file on the way to the output directory")
            << "@/app" << none << none << "@/a file/new"
            << "cannot create the output directory @/a file/new";
    }
    void refused()
    {
        QFETCH(QString, folder);
        QFETCH(QString, main);
        QFETCH(QString, icon);
        QFETCH(QString, output);
        PackOptions line;
        line.folder = here(folder);
        line.mainProgram = here(main);
        line.iconPath = here(icon);
        line.output = here(output);
        QFETCH(QString, message);
        QCOMPARE(messageOf(checkInputs(line)), here(message));
        QVERIFY2(!QDir(here("@/out/new")).exists(), "a refusal left the output directory behind");
    }

    void aFolderThatTheArchiverTakesForAPatternIsRefused_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<bool>("refused");
        QTest::newRow("a star") << "a*b" << true;
        QTest::newRow("a question mark") << "a?b" << true;
        QTest::newRow("a star in a folder above") << "a*b/app" << true;
        QTest::newRow("brackets") << "a[b]" << false;
        QTest::newRow("the archiver's sign of a list") << "@a" << false;
        QTest::newRow("a dash in front") << "-a" << false;
    }
    void aFolderThatTheArchiverTakesForAPatternIsRefused()
    {
        QFETCH(QString, folder);
        QFETCH(bool, refused);
        if (onWindows && refused) {
            QSKIP("there are no such names here");
        }
        const QString path = here("@/patterns/" + folder);
        QVERIFY(QDir().mkpath(path) && writeFile(path + "/a.exe", "content"));
        PackOptions line = usualLine();
        line.folder = path;
        const QString message = QString("the path of the folder %1 has a * or ? in it, which the "
                                        "archiver takes for a pattern");
        QCOMPARE(messageOf(checkInputs(line)), refused ? message.arg(path) : QString());
        if (refused) { // also through a link whose own path has no * or ?
            const QString link = here("@/patterns/link");
            QFile::remove(link);
            QVERIFY(QFile::link(path, link));
            line.folder = link;
            QCOMPARE(messageOf(checkInputs(line)), message.arg(path));
        }
    }

    void aProgramThatAProducedFileCannotStartIsRefused_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("refused");
        for (const char *name :
             {"a%0.exe", "%1.exe", "a%2b.exe", "a.%3.exe", "a%9.exe", "a%10.exe", "%L1.exe"}) {
            QTest::newRow(name) << QString(name) << true;
        }
        for (const char *name :
             {"a\"b.exe", "a*.exe", "a?.exe", "a\nb.exe", "a:b.exe", "a<b.exe"}) {
            if (!onWindows) { // Windows does not allow these names
                QTest::newRow(name) << QString(name) << true;
            }
        }
        for (const char *name : {"con.exe", "NUL.exe", "aux.tool.exe", "prn .exe", "com1.exe",
                                 "Lpt0.exe", "com¹.exe", "conin$.exe", "CONOUT$.exe"}) {
            if (!onWindows) { // Windows opens a device instead
                QTest::newRow(name) << QString(name) << true;
            }
        }
        for (const char *name :
             {"100%.exe", "a%b.exe", "a%%T.exe", "a'b.exe", "a;b.exe", "文件.exe", "console.exe",
              "con-1.exe", "com10.exe", "lpt.exe", "my.con.exe", "nul_.exe", "com1x.exe"}) {
            QTest::newRow(name) << QString(name) << false;
        }
    }
    void aProgramThatAProducedFileCannotStartIsRefused()
    {
        QFETCH(QString, name);
        QFETCH(bool, refused);
        QTemporaryDir folder;
        QVERIFY(writeFile(folder.filePath(name), "content"));
        PackOptions line = usualLine();
        line.folder = folder.path();
        line.mainProgram = name;
        const QString message = messageOf(checkInputs(line));
        QCOMPARE(message.startsWith("the produced file could not start " + name + ": ")
                     || message.contains(".exe cannot be packed: on Windows "),
                 refused);
        QCOMPARE(message.isEmpty(), !refused);
        line.mainProgram.clear(); // the check finds it by itself
        QCOMPARE(messageOf(checkInputs(line)), message);
    }

    void anIconFileMayHave64MiB()
    {
        PackOptions line = usualLine();
        line.iconPath = here("@/large.ico");
        QFile icon(line.iconPath);
        QVERIFY(icon.open(QIODevice::WriteOnly) && icon.resize(64 * 1048576));
        QCOMPARE(messageOf(checkInputs(line)), QString());
        QVERIFY(icon.resize(64 * 1048576 + 1));
        QCOMPARE(messageOf(checkInputs(line)),
                 here("the icon file @/large.ico is larger than 64 MiB"));
    }

    void aFolderWithTheTemporaryDirectoryInItIsRefused()
    {
        const PrivateTemp temp;
        PackOptions line = usualLine();
        line.folder = temp.path();
        const QString refusal = QString("the temporary directory %1 is inside the folder to pack");
        QCOMPARE(messageOf(checkInputs(line)), refusal.arg(QDir::tempPath()));
        line.folder = QFileInfo(temp.path()).path();
        QCOMPARE(messageOf(checkInputs(line)), refusal.arg(QDir::tempPath()));
    }

    void theTrialLeavesNothingInTheOutputDirectory()
    {
        QCOMPARE(messageOf(checkInputs(usualLine())), QString());
        QCOMPARE(
            QDir(here("@/out")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
            QStringList());
    }

private:
    QString here(QString text) const
    {
        return text.replace('@', QFileInfo(m_root.path()).canonicalFilePath());
    }

    PackOptions usualLine() const
    {
        PackOptions line;
        line.folder = here("@/app");
        line.output = here("@/out");
        return line;
    }

    // Returns an empty text if nothing was refused.
    template <typename Good>
    static QString messageOf(const std::variant<Good, Refusal> &checked)
    {
        const auto *refusal = std::get_if<Refusal>(&checked);
        return refusal ? refusal->message : QString();
    }

    QTemporaryDir m_root;
};

QTEST_GUILESS_MAIN(TestInputCheck)
#include "tst_inputcheck.moc"
