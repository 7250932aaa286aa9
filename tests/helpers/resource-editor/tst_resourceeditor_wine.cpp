// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/resource-editor/editorrun.h"
#include "tests/support/builtfile.h"
#include "tests/support/windowsprogram.h"

#include <QDir>
#include <QTest>

// Edited programs load and start under Wine, and Windows' own functions find the icon.
class TestResourceEditorWine : public QObject
{
    Q_OBJECT

private:
    struct Run
    {
        int exitCode;
        QString output;
    };

    static Run run(const QStringList &arguments)
    {
        QProcess process;
        startWindowsProgram(process, arguments.constFirst(), arguments.sliced(1));
        if (!process.waitForFinished(300000)) {
            return {-1, "timed out"};
        }
        return {process.exitCode(),
                QString::fromUtf8(process.readAllStandardOutput()).remove('\r')};
    }

    static QStringList versionSizes(const QString &output)
    {
        QStringList sizes;
        for (const QString &line : output.split('\n', Qt::SkipEmptyParts)) {
            sizes << line.section("version: ", 1);
        }
        return sizes;
    }

private slots:
    void realProgramsLoadWithTheNewIcon()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath("icon.ico"), petest::makeIcon({16, 32, 48, 256})));
        QStringList originals{builtFile(KESTRELPACK_HELLO_EXE), builtFile(KESTRELPACK_MODULE),
                              builtFile(KESTRELPACK_IDENTIFIED)};
        // On Windows these are missing, or the same as under Wine.
        const QDir stubs("/usr/share/nsis/Stubs");
        for (const QString &name : stubs.entryList({"*x86*", "*amd64*"}, QDir::Files)) {
            originals << stubs.filePath(name);
        }
        for (const char *name : {"notepad.exe", "regedit.exe", "winemine.exe", "winefile.exe"}) {
            const QString path
                = QStringLiteral("/usr/lib/x86_64-linux-gnu/wine/x86_64-windows/%1").arg(name);
            if (QFile::exists(path)) {
                originals << path;
            }
        }
        QStringList copies;
        for (const QString &original : std::as_const(originals)) {
            copies << dir.filePath(QStringLiteral("%1.exe").arg(copies.size()));
            QVERIFY(writeFile(copies.constLast(), readFile(original) + petest::overlayOf(5000)));
        }
        const Run before = run(QStringList{builtFile(KESTRELPACK_LOADICONS)} + copies);
        QVERIFY2(before.exitCode == 0, qPrintable(before.output));

        for (const QString &copy : std::as_const(copies)) {
            for (int round = 0; round < 2; ++round) {
                QCOMPARE(startEditor(deleteArguments(copy)).status, 0);
                QCOMPARE(startEditor(addArguments(copy, dir.filePath("icon.ico"))).status, 0);
            }
        }
        const Run after = run(QStringList{builtFile(KESTRELPACK_LOADICONS)} + copies);
        QVERIFY2(after.exitCode == 0, qPrintable(after.output));
        const QStringList lines = after.output.split('\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), copies.size());
        for (const QString &line : lines) {
            QVERIFY2(line.startsWith("groups: MAINICON=32 version: "), qPrintable(line));
        }
        QCOMPARE(versionSizes(after.output), versionSizes(before.output));
    }

    void anEditedProgramStillRuns()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath("icon.ico"), petest::makeIcon({16, 32, 128, 200, 256})));
        const QString program = dir.filePath("程序.exe");
        QVERIFY(writeFile(program, readFile(builtFile(KESTRELPACK_HELLO_EXE))));
        QCOMPARE(startEditor(deleteArguments(program)).status, 0);
        QCOMPARE(startEditor(addArguments(program, dir.filePath("icon.ico"))).status, 0);
        const Run ended = run({program, "--exit", "23"});
        QCOMPARE(ended.exitCode, 23);
    }
};

QTEST_GUILESS_MAIN(TestResourceEditorWine)
#include "tst_resourceeditor_wine.moc"
