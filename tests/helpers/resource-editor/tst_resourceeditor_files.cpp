// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/resource-editor/editorrun.h"
#include "tests/support/sanitizer.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTest>

#include <csignal>
#include <vector>

#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr qint64 gibibyte = 1LL << 30;

// All resources that are not icons, as an independent program extracts them.
QByteArray wrestool(const QStringList &arguments)
{
    QProcess process;
    process.start("wrestool", arguments);
    return process.waitForFinished(300000) ? process.readAllStandardOutput() : QByteArray("failed");
}

QByteArray resourcesByWrestool(const QString &program)
{
    QByteArray all;
    for (const char *type : {"4", "5", "6", "9", "10", "11", "16", "23", "24"}) {
        all += wrestool({"-x", "--raw", "-t", type, program});
    }
    return all;
}

// Runs the editor and stops it at the beginning and at the end of each system call. Kills it at
// stop `number`. Returns the number of stops, which is less than `number` if the editor ended
// before.
int stopsOf(const QStringList &arguments, int number)
{
    std::vector<QByteArray> texts{KESTRELPACK_RESOURCE_EDITOR};
    for (const QString &argument : arguments) {
        texts.push_back(QFile::encodeName(argument));
    }
    std::vector<char *> pointers;
    pointers.reserve(texts.size() + 1);
    for (QByteArray &text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    const pid_t id = fork();
    if (id == 0) {
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        execv(pointers[0], pointers.data());
        _exit(127);
    }
    int status = 0;
    waitpid(id, &status, 0);
    int stops = 0;
    for (; WIFSTOPPED(status); ++stops) {
        if (stops == number) {
            kill(id, SIGKILL);
            waitpid(id, &status, 0);
            return number;
        }
        ptrace(PTRACE_SYSCALL, id, nullptr, nullptr);
        waitpid(id, &status, 0);
    }
    return stops;
}

bool runAndKillAt(const QStringList &arguments, int number)
{
    return stopsOf(arguments, number) == number;
}

bool canTrace()
{
    return runAndKillAt({}, 1);
}

} // namespace

// Tests the editor on real programs, on large files, and when it is killed.
class TestResourceEditorFiles : public QObject
{
    Q_OBJECT

private:
    static void makeIcon(const QTemporaryDir &dir, const QList<int> &sizes = {16, 32, 48, 256})
    {
        if (!writeFile(dir.filePath("icon.ico"), petest::makeIcon(sizes))) {
            qFatal("the icon could not be made");
        }
    }

private slots:
    void realProgramsKeepTheirOtherResources_data()
    {
        QTest::addColumn<QString>("path");
        QStringList paths{KESTRELPACK_HELLO_EXE, KESTRELPACK_MODULE};
        const QDir stubs("/usr/share/nsis/Stubs");
        for (const QString &name : stubs.entryList({"*x86*", "*amd64*"}, QDir::Files)) {
            paths << stubs.filePath(name);
        }
        const QDir wine("/usr/lib/x86_64-linux-gnu/wine/x86_64-windows");
        for (const char *name : {"notepad.exe", "regedit.exe", "winemine.exe", "explorer.exe",
                                 "winefile.exe", "cmd.exe", "taskmgr.exe", "wordpad.exe"}) {
            paths << wine.filePath(name);
        }
        for (const QString &path : paths) {
            if (QFile::exists(path)) {
                QTest::newRow(qPrintable(QFileInfo(path).fileName())) << path;
            }
        }
    }
    void realProgramsKeepTheirOtherResources()
    {
        QFETCH(QString, path);
        QTemporaryDir dir;
        makeIcon(dir);
        const QString program = dir.filePath("a.exe");
        const QByteArray overlay = petest::overlayOf(100003);
        const QByteArray before = readFile(path) + overlay;
        QVERIFY(writeFile(program, before));
        const QByteArray listed = resourcesByWrestool(program);

        for (int round = 0; round < 2; ++round) {
            EditorRun result = startEditor(deleteArguments(program));
            QVERIFY2(result.status == 0, result.errors.constData());
            QCOMPARE(iconGroups(readFile(program)), QStringList());
            result = startEditor(addArguments(program, dir.filePath("icon.ico")));
            QVERIFY2(result.status == 0, result.errors.constData());

            const QByteArray after = readFile(program);
            QCOMPARE(iconGroups(after), QStringList("14/\"MAINICON\"/0"));
            QCOMPARE(otherResources(after), otherResources(before));
            QVERIFY(after.endsWith(overlay));
            QCOMPARE(petest::lookAt(after).fault, petest::lookAt(before).fault);
            QCOMPARE(petest::lookAt(after).checkSum, 0U);
            QCOMPARE(resourcesByWrestool(program), listed);
            const QByteArray groups = wrestool({"-l", "-t14", program});
            QVERIFY2(groups.contains("MAINICON"), groups.constData());
        }
    }

    // The engine waits 3 and 5 seconds for the two runs. This test counts system calls instead,
    // since the machine may be slow: the file is copied once, in large pieces, without its holes.
    void aFileOfOneGibibyteInFewStepsAndInLittleMemory()
    {
        QTemporaryDir dir;
        makeIcon(dir,
                 {16, 32, 128, 200, 256}); // more than the program's own, so the file must grow
        const QString program = dir.filePath("large.exe");
        QVERIFY(writeFile(program, readFile(KESTRELPACK_HELLO_EXE)));
        QFile file(program);
        QVERIFY(file.open(QIODevice::ReadWrite | QIODevice::Append));
        const QByteArray chunk = petest::overlayOf(1 << 20);
        for (int i = 0; i < 256; ++i) {
            QCOMPARE(file.write(chunk), chunk.size());
        }
        file.close();
        QVERIFY(file.open(QIODevice::ReadWrite) && file.resize(gibibyte)); // the rest is a hole
        QVERIFY(file.seek(gibibyte - 7) && file.write("the end") == 7);
        file.close();

        QElapsedTimer timer;
        timer.start();
        QCOMPARE(QProcess::execute("cp", {program, dir.filePath("copy.exe")}), 0);
        const qint64 copying = timer.restart();
        QCOMPARE(startEditor(deleteArguments(program)).status, 0);
        const qint64 deleting = timer.restart();
        QCOMPARE(startEditor(addArguments(program, dir.filePath("icon.ico"))).status, 0);
        const qint64 adding = timer.elapsed();
        qInfo("delete run %lld ms, add run %lld ms; cp takes %lld ms",
              static_cast<long long>(deleting), static_cast<long long>(adding),
              static_cast<long long>(copying));
        if (!underSanitizer && canTrace()) { // a sanitizer makes system calls itself
            // A buffer of 4 MiB takes 2 calls for each of 64 pieces, and each call has 2 stops.
            constexpr int most = 800;
            const int stops = stopsOf(addArguments(program, dir.filePath("icon.ico")), most);
            QVERIFY2(stops < most, qPrintable(QString::number(stops)));
        }

        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.size() > gibibyte);
        QFile copy(dir.filePath("copy.exe"));
        QVERIFY(copy.open(QIODevice::ReadOnly));
        for (const qint64 fromEnd : {7LL, gibibyte - (1 << 20), gibibyte - (200 << 20)}) {
            QVERIFY(file.seek(file.size() - fromEnd) && copy.seek(copy.size() - fromEnd));
            QCOMPARE(file.read(1 << 20), copy.read(1 << 20));
        }
        QVERIFY(file.seek(file.size() - 7));
        QCOMPARE(file.readAll(), QByteArray("the end"));
#ifndef __SANITIZE_ADDRESS__ // it uses hundreds of megabytes itself
        rusage usage = {};
        QCOMPARE(getrusage(RUSAGE_CHILDREN, &usage), 0);
        QVERIFY2(usage.ru_maxrss < 64 * 1024, qPrintable(QString::number(usage.ru_maxrss)));
#endif
    }

    // Whenever the editor is killed, either the old file or the new one remains.
    void killedAnywhereTheFileIsTheOldOneOrTheNewOne_data()
    {
        QTest::addColumn<bool>("adds");
        QTest::newRow("deleting") << false;
        QTest::newRow("adding") << true;
    }
    void killedAnywhereTheFileIsTheOldOneOrTheNewOne()
    {
        QFETCH(bool, adds);
        QTemporaryDir dir;
        makeIcon(dir);
        const QString program = dir.filePath("a.exe");
        const QByteArray before = petest::makeProgram({.overlay = 1 << 20});
        const QStringList arguments = adds ? addArguments(program, dir.filePath("icon.ico"))
                                           : deleteArguments(program);
        QVERIFY(writeFile(program, before));
        QCOMPARE(startEditor(arguments).status, 0);
        const petest::Resources expected = petest::lookAt(readFile(program)).resources;
        const petest::Resources original = petest::lookAt(before).resources;
        QVERIFY(expected != original);

        if (!canTrace()) {
            QSKIP("this system does not let one process trace another");
        }
        int killed = 0;
        QVERIFY(writeFile(program, before));
        while (runAndKillAt(arguments, killed + 1)) {
            ++killed;
            const QByteArray after = readFile(program);
            const petest::PeFacts facts = petest::lookAt(after);
            QCOMPARE(facts.fault, QString());
            QVERIFY(facts.resources == original || facts.resources == expected);
            QVERIFY(after.endsWith(before.right(1 << 20)));
            QVERIFY(writeFile(program, before));
        }
        QVERIFY2(killed > 50, qPrintable(QString::number(killed)));
    }

    void aFullDiskLeavesTheFileAsItWas()
    {
        QTemporaryDir dir;
        makeIcon(dir);
        QVERIFY(QDir(dir.path()).mkdir("small"));
        const QString small = dir.filePath("small");
        if (QProcess::execute("/bin/sh",
                              {"-c", "mount -t tmpfs -o size=3m tmpfs \"$0\" 2>/dev/null", small})
            != 0) {
            QSKIP("only root can mount");
        }
        const QByteArray before = petest::makeProgram({.overlay = 2 << 20});
        const QString program = small + "/a.exe";
        const bool written = writeFile(program, before);
        const EditorRun result = startEditor(addArguments(program, dir.filePath("icon.ico")));
        const QByteArray after = readFile(program);
        const QStringList left
            = QDir(small).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        QProcess::execute("umount", {small});
        QVERIFY(written);
        QCOMPARE(result.status, 8);
        QCOMPARE(result.errors.count('\n'), 1);
        QCOMPARE(after, before);
        QCOMPARE(left, QStringList("a.exe"));
    }

    void anotherNameToSaveLeavesTheOpenedFileAlone()
    {
        QTemporaryDir dir;
        makeIcon(dir);
        const QByteArray before = petest::makeProgram({.overlay = 1000});
        QVERIFY(writeFile(dir.filePath("a.exe"), before));
        QStringList arguments = addArguments(dir.filePath("a.exe"), dir.filePath("icon.ico"));
        arguments[3] = dir.filePath("b.exe");
        QCOMPARE(startEditor(arguments).status, 0);
        QCOMPARE(readFile(dir.filePath("a.exe")), before);
        QVERIFY(iconGroups(readFile(dir.filePath("b.exe"))).contains("14/\"MAINICON\"/0"));
    }
};

QTEST_GUILESS_MAIN(TestResourceEditorFiles)
#include "tst_resourceeditor_files.moc"
