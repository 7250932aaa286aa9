// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/worker.h"

#include "tests/fakes/fakeplatform.h"
#include "tests/fakes/privatetemp.h"
#include "tests/packaging/signalrecorder.h"

#include <QElapsedTimer>
#include <QTest>

// Waits for the archiver's whole silence of 30 seconds, so it is a separate test program.
class TestArchiverSilence : public QObject
{
    Q_OBJECT

private slots:
    void aSilentArchiverCountsAsEndedAndIsEndedWithTheRun()
    {
        PrivateTemp temp;
        FakePlatform platform;
        QVERIFY(QDir(temp.path()).mkpath("source"));
        QVERIFY(QFile(temp.filePath("source/a.exe")).open(QIODevice::WriteOnly));
        temp.plantModule("module");
        // Far longer than the test may take. If the job waits for the archiver's end, the test
        // fails.
        temp.plantArchiver("print 10%\nsleep 4000000\n");

        Worker worker;
        SignalRecorder recorder(worker);
        QElapsedTimer timer;
        timer.start();
        worker.createPortableApp(temp.filePath("source"), temp.filePath("temp.7z"), temp.path(),
                                 "a.exe", {}, "5", "LZMA", "16M");
        QVERIFY2(timer.elapsed() >= 30000, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(recorder.signalsSeen.mid(5, 3),
                 QStringList({"progress 10", "log 10%", "log 压缩包创建成功"}));
        QCOMPARE(recorder.signalsSeen.mid(recorder.signalsSeen.size() - 2),
                 QStringList({"log 错误：无法读取压缩包文件", "finished false"}));
    }
};

QTEST_GUILESS_MAIN(TestArchiverSilence)
#include "tst_archiversilence.moc"
