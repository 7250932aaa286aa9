// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/blockwriter.h"
#include "packaging/worker.h"
#include "tests/fakes/fakeplatform.h"
#include "tests/fakes/privatetemp.h"
#include "tests/support/builtfile.h"
#include "tests/support/onwindows.h"
#include "tests/support/testfiles.h"
#include "tests/support/waiting.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTest>
#include <QtEndian>

namespace {

// The images of an ICO file, in the order of the file.
QList<QByteArray> imagesOfIcon(const QByteArray &icon)
{
    QList<QByteArray> images;
    const int count = qFromLittleEndian<quint16>(icon.constData() + 4);
    for (int i = 0; i < count; ++i) {
        const char *entry = icon.constData() + 6 + 16 * i;
        images << icon.mid(qFromLittleEndian<quint32>(entry + 12),
                           qFromLittleEndian<quint32>(entry + 8));
    }
    return images;
}

struct ToolRun
{
    int exitCode;
    QByteArray output;
};

ToolRun run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::SeparateChannels);
    process.start(program, arguments);
    if (!process.waitForFinished(patience)) {
        return {-1, {}};
    }
    return {process.exitCode(), process.readAllStandardOutput()};
}

} // namespace

// Whole jobs with the bundle's own helpers, on the example application.
class TestProductLayout : public QObject
{
    Q_OBJECT

private:
    // Runs a job with `iconPath`, without the pauses. The main program's own icon is not used, so
    // without `iconPath` the job leaves the file as it was assembled.
    static bool pack(const PrivateTemp &temp, const QString &iconPath)
    {
        FakePlatform platform;
        platform.usesBackslashes = onWindows;
        Worker worker;
        bool success = false;
        connect(&worker, &Worker::finished, &worker, [&success](bool done) { success = done; });
        connect(&worker, &Worker::logMessage, &worker, [](const QString &line) {
            qInfo().noquote() << line; // Qt shows these lines if a test fails
        });
        const QString folder = QFileInfo(builtFile(KESTRELPACK_HELLO_FOLDER))
                                   .canonicalFilePath(); // with its drive letter
        worker.createPortableApp(folder, temp.filePath("temp.7z"), temp.path(), "hello.exe",
                                 iconPath, "5", "LZMA", "16M");
        return success;
    }

    static QString archiver(const PrivateTemp &temp) { return temp.filePath("7zr.exe"); }

private slots:
    void moduleBlockAndArchiveLieAtTheirOffsets()
    {
        PrivateTemp temp;
        QVERIFY(pack(temp, {}));
        const QByteArray module = readFile(":/resources/7zS2.sfx");
        const QByteArray block = configurationBlock("hello", "hello.exe").toUtf8();
        const QByteArray archive = readFile(temp.filePath("temp.7z"));
        QVERIFY(module.startsWith("MZ"));
        QVERIFY(archive.startsWith("7z\xBC\xAF\x27\x1C"));
        const QByteArray product = readFile(temp.filePath("hello.exe"));
        QCOMPARE(product.size(), module.size() + block.size() + archive.size());
        QVERIFY(product.startsWith(module));
        QCOMPARE(product.mid(module.size(), block.size()), block);
        QVERIFY(product.endsWith(archive));
        QCOMPARE(run(archiver(temp), {"t", temp.filePath("hello.exe")}).exitCode, 0);
    }

    void settingTheIconKeepsBlockAndArchive()
    {
        PrivateTemp temp;
        QVERIFY(pack(temp, builtFile(KESTRELPACK_HELLO_ICON)));
        const QByteArray tail = configurationBlock("hello", "hello.exe").toUtf8()
            + readFile(temp.filePath("temp.7z"));
        QVERIFY(readFile(temp.filePath("hello.exe")).endsWith(tail));
        const ToolRun test = run(archiver(temp), {"t", temp.filePath("hello.exe")});
        QVERIFY2(test.exitCode == 0 && test.output.contains("Everything is Ok"),
                 test.output.constData());
        QVERIFY2(!test.output.contains("WARNING"), test.output.constData());
    }

    void theIconIsTheGroupMainiconWithTheImagesOfTheFile()
    {
        if (QStandardPaths::findExecutable("wrestool").isEmpty()) {
            QSKIP("wrestool (package icoutils) is not installed");
        }
        PrivateTemp temp;
        QVERIFY(pack(temp, builtFile(KESTRELPACK_HELLO_ICON)));
        const QString product = temp.filePath("hello.exe");
        const ToolRun groups = run("wrestool", {"-l", "-t14", product});
        QCOMPARE(groups.output.count('\n'), 1);
        QVERIFY2(groups.output.contains("--name='MAINICON' --language=0"),
                 groups.output.constData());
        const ToolRun icon = run("wrestool", {"-x", "-t14", "-n", "MAINICON", product});
        const QList<QByteArray> expected
            = imagesOfIcon(readFile(builtFile(KESTRELPACK_HELLO_ICON)));
        QCOMPARE(expected.size(), 6);
        QCOMPARE(imagesOfIcon(icon.output), expected);
    }

    void packingTwiceGivesTheSameIconAgain()
    {
        PrivateTemp temp;
        QVERIFY(pack(temp, builtFile(KESTRELPACK_HELLO_ICON)));
        const QByteArray first = readFile(temp.filePath("hello.exe"));
        QVERIFY(QFile::remove(temp.filePath("temp.7z")));
        QVERIFY(pack(temp, builtFile(KESTRELPACK_HELLO_ICON)));
        QCOMPARE(readFile(temp.filePath("hello.exe")).size(), first.size());
    }
};

QTEST_GUILESS_MAIN(TestProductLayout)
#include "tst_productlayout.moc"
