// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/productcheck.h"

#include "preparation/programicon.h"
#include "tests/cli/clirun.h"
#include "tests/helpers/pe/petest.h"

#include <QTest>

// The finished executable is read before it gets its name.
class TestProductCheck : public QObject
{
    Q_OBJECT

private:
    // What the real archiver makes of a folder.
    static QByteArray realArchiveOf(const CliSurroundings &s, const QString &folder)
    {
        const QString archiver = s.path("real-7zr.exe");
        const QString archive = s.path("real.7z");
        if (!QFile::copy(":/resources/7zr.exe", archiver)
            || !QFile::setPermissions(archiver, QFile::ReadOwner | QFile::ExeOwner)) {
            qFatal("the archiver could not be copied");
        }
        QProcess process;
        process.start(archiver,
                      {"a", "-t7z", QDir::toNativeSeparators(archive),
                       QDir::toNativeSeparators(s.path(folder) + "/*"), "-r", "-m0=Copy"});
        if (!process.waitForFinished(300000) || process.exitCode() != 0) {
            qFatal("the archive could not be made");
        }
        return readFile(archive);
    }

    // Two images, which are the same bytes. The engine accepts that; the resource editor does not.
    static QByteArray overlappingIcon()
    {
        QByteArray icon = petest::makeIcon({48});
        icon[4] = 2;
        icon[18] = static_cast<char>(icon[18] + 16); // where the image begins now
        return icon.insert(6, icon.mid(6, 16));
    }

    static CliResult run(const CliSurroundings &s, const QStringList &options)
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("KESTRELPACK_TEST_CHECK", "real");
        process.setProcessEnvironment(environment);
        process.start(builtFile(KESTRELPACK_CLI),
                      QStringList{"--language", "en"} + options + s.arguments());
        return CliSurroundings::resultOf(process);
    }

private slots:
    void whatWouldNotStartIsNotMade_data()
    {
        QTest::addColumn<QString>("packed"); // the folder in the archive
        QTest::addColumn<bool>("damaged");
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QString>("refusal"); // empty: the job is done
        const QString damaged
            = "the file is damaged or incomplete, or is not a produced file: my.tool.exe (201)";
        const QString missing = "the archive does not contain the program to run";
        QTest::newRow("whole") << "source" << false << QStringList() << QString();
        QTest::newRow("a damaged byte") << "source" << true << QStringList() << damaged;
        QTest::newRow("a damaged byte that nobody looks at")
            << "source" << true << QStringList("--no-verify") << QString();
        QTest::newRow("no main program") << "another" << false << QStringList() << missing;
        QTest::newRow("no main program, and no decoding")
            << "another" << false << QStringList("--no-verify") << missing;
    }
    void whatWouldNotStartIsNotMade()
    {
        if (!canCheckProducts()) {
            QSKIP("this build cannot read produced files");
        }
        QFETCH(QString, packed);
        QFETCH(bool, damaged);
        QFETCH(QStringList, options);
        QFETCH(QString, refusal);
        CliSurroundings s;
        s.write("another/other.exe", "program");
        s.write("output/my.exe", "the older one");
        QByteArray archive = realArchiveOf(s, packed);
        const qsizetype at = archive.indexOf("program");
        QVERIFY(at > 0);
        archive[at] = damaged ? 'P' : 'p';
        s.write("archive.7z", archive);
        QVERIFY(QFile::remove(s.temp.filePath("7zS2.sfx"))); // the module is the bundle's
        const CliResult result = run(s, options);
        QCOMPARE(result.exitStatus, refusal.isEmpty() ? 0 : 1);
        QVERIFY2(result.errors.contains(refusal.isEmpty() ? QString()
                                                          : "kestrelpack-cli: " + s.product()
                                                + " was not made: it would not start: " + refusal),
                 qPrintable(result.errors));
        QCOMPARE(s.read("output/my.exe") == "the older one", !refusal.isEmpty());
        QCOMPARE(s.namesIn("output"), QStringList("my.exe"));
    }

    void aModuleThatIsNoProgramIsFound()
    {
        if (!canCheckProducts()) {
            QSKIP("this build cannot read produced files");
        }
        CliSurroundings s; // with a module of six letters
        s.write("archive.7z", realArchiveOf(s, "source"));
        const CliResult result = run(s, {"--no-verify"});
        QCOMPARE(result.exitStatus, 1);
        QCOMPARE(s.namesIn("output"), QStringList());
    }

    void theIconIsThereInAnyCase_data()
    {
        QTest::addColumn<QByteArray>("editor"); // what it does
        QTest::newRow("the editor does nothing") << QByteArray();
        QTest::newRow("the editor fails") << QByteArray("exit 3\n");
        QTest::newRow("the editor takes too long") << QByteArray("if addoverwrite\nsleep 600000\n");
        QTest::newRow("deleting takes so long that nothing is added")
            << QByteArray("if delete\nsleep 4000\n");
    }
    void theIconIsThereInAnyCase()
    {
        if (!canCheckProducts()) {
            QSKIP("this build cannot read produced files");
        }
        QFETCH(QByteArray, editor);
        CliSurroundings s;
        s.write("archive.7z", realArchiveOf(s, "source"));
        s.write("own.ico", petest::makeIcon({48, 16}));
        s.temp.plantEditor(editor);
        QVERIFY(QFile::remove(s.temp.filePath("7zS2.sfx"))); // the module is the bundle's
        const CliResult result = run(s, {"-i", s.path("own.ico")});
        QVERIFY2(result.exitStatus == 0, qPrintable(result.errors));
        QCOMPARE(iconFileOfProgram(s.product()).toHex(), petest::makeIcon({48, 16}).toHex());
        QVERIFY2(result.errors.contains("it has been added now"), qPrintable(result.errors));
        QCOMPARE(s.namesIn("output"), QStringList("my.exe"));
    }

    void anIconThatCannotBeAddedIsAFailure()
    {
        if (!canCheckProducts()) {
            QSKIP("this build cannot read produced files");
        }
        CliSurroundings s;
        s.write("archive.7z", realArchiveOf(s, "source"));
        s.write("own.ico", overlappingIcon());
        QVERIFY(QFile::remove(s.temp.filePath("7zS2.sfx")));
        const CliResult result = run(s, {"-i", s.path("own.ico")});
        QCOMPARE(result.exitStatus, 1);
        QVERIFY2(result.errors.contains("was not made: the icon cannot be added: "),
                 qPrintable(result.errors));
        QCOMPARE(s.namesIn("output"), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestProductCheck)
#include "tst_productcheck.moc"
