// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/support/waiting.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

// Tests the bundle's archiver while it waits for input that does not come.
class TestHeartbeat : public QObject
{
    Q_OBJECT

private:
    static constexpr int stepMs = 100;

    // Time is counted in waits of a tenth of a second. These waits stop when the whole machine
    // stops.
    class WaitingArchiver
    {
    public:
        explicit WaitingArchiver(const QStringList &options)
        {
            const QString program = m_temp.filePath("7zr.exe");
            if (!QFile::copy(":/resources/7zr.exe", program)
                || !QFile::setPermissions(program,
                                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner)) {
                qFatal("the archiver could not be copied");
            }
            m_process.setWorkingDirectory(m_temp.path());
            m_process.start(program,
                            QStringList(
                                {"a", "-t7z", "out.7z", "-siname", "-mx=5", "-m0=LZMA", "-ssc"})
                                + options);
        }
        ~WaitingArchiver()
        {
            m_process.kill();
            m_process.waitForFinished(patience);
        }

        // Counts steps until the archiver prints more, up to `limit`.
        int silentSteps(int limit)
        {
            int steps = 0;
            while (steps < limit && !m_process.waitForReadyRead(stepMs)) {
                ++steps;
            }
            m_output += m_process.readAllStandardOutput();
            return steps;
        }

        bool waitForText(const char *text)
        {
            QElapsedTimer timer;
            timer.start();
            while (!m_output.contains(text) && timer.elapsed() < patience) {
                silentSteps(1);
            }
            return m_output.contains(text);
        }

        bool finish()
        {
            m_process.write("content");
            m_process.closeWriteChannel();
            const bool finished = m_process.waitForFinished(patience);
            m_output += m_process.readAllStandardOutput();
            return finished;
        }

        qsizetype progressLines() const
        {
            static const QRegularExpression line("\\d+[%M]");
            return QString::fromLatin1(m_output).count(line);
        }

        QProcess &process() { return m_process; }
        QByteArray output() const { return m_output; }

    private:
        QTemporaryDir m_temp;
        QProcess m_process;
        QByteArray m_output;
    };

private slots:
    // Three lines in a row must each come within five seconds. The machine may be slow once, but
    // not always.
    void theProgressLineComesAgainWithinFiveSecondsUntilTheEnd()
    {
        WaitingArchiver archiver({"-bsp1"});
        QVERIFY(archiver.waitForText("0M"));
        QElapsedTimer timer;
        timer.start();
        for (int inARow = 0; inARow < 3;) {
            const qsizetype before = archiver.progressLines();
            const int steps = archiver.silentSteps(10000 / stepMs);
            const bool isInTime = archiver.progressLines() > before && steps <= 5000 / stepMs;
            inARow = isInTime ? inARow + 1 : 0;
            QVERIFY2(timer.elapsed() < patience, archiver.output());
        }

        QVERIFY(archiver.finish());
        QCOMPARE(archiver.process().exitCode(), 0);
        QVERIFY2(archiver.output().trimmed().endsWith("Everything is Ok"), archiver.output());
    }

    void withoutProgressOutputThereIsNone()
    {
        WaitingArchiver notAsked({});
        WaitingArchiver refused({"-bsp0"});
        WaitingArchiver elsewhere({"-bsp2"});
        QTest::qWait(5000);
        for (WaitingArchiver *archiver : {&notAsked, &refused, &elsewhere}) {
            QVERIFY(archiver->finish());
            QCOMPARE(archiver->progressLines(), 0);
            QVERIFY2(archiver->output().trimmed().endsWith("Everything is Ok"), archiver->output());
        }
    }
};

QTEST_GUILESS_MAIN(TestHeartbeat)
#include "tst_heartbeat.moc"
