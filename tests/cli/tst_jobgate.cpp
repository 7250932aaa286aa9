// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/jobgate.h"

#include "cli/interrupt.h"
#include "tests/support/onwindows.h"
#include "tests/support/waiting.h"

#include <QElapsedTimer>
#include <QTest>

#include <functional>
#include <future>
#include <memory>
#include <thread>
#include <vector>

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds hangLimit(patience);

using Way = std::function<void(JobGate &)>;

// A job that runs on its own thread and passes a gate.
class GatedJob
{
public:
    // A thread at a closed gate waits until the program ends, so no job is ever deleted. No thread
    // is detached, either: mingw-w64's library would reuse the data of one that is just ending.
    static GatedJob &start(const Way &way)
    {
        static auto &jobs = *new std::vector<std::unique_ptr<GatedJob>>;
        GatedJob *const job = jobs.emplace_back(std::make_unique<GatedJob>()).get();
        job->m_thread = std::thread([job, way] {
            way(job->gate);
            job->m_through.set_value();
        });
        return *job;
    }

    bool isThroughWithin(std::chrono::milliseconds limit)
    {
        if (m_end.wait_for(limit) != std::future_status::ready) {
            return false;
        }
        if (m_thread.joinable()) {
            m_thread.join();
        }
        return true;
    }

    JobGate gate;

private:
    std::promise<void> m_through;
    std::future<void> m_end = m_through.get_future();
    std::thread m_thread;
};

} // namespace

class TestJobGate : public QObject
{
    Q_OBJECT

private slots:
    // Windows kills the program five seconds after its console was closed, or the user has logged
    // off.
    void aJobStopsInTimeForTheCleanUp_data()
    {
        QTest::addColumn<int>("cause");
        QTest::addColumn<int>("seconds");
        QTest::newRow("Ctrl-C") << (onWindows ? 0 : 2) << 5; // CTRL_C_EVENT, SIGINT
        QTest::newRow("a closed terminal") << (onWindows ? 2 : 1) << (onWindows ? 2 : 5);
        if (onWindows) {
            QTest::newRow("Ctrl-Break") << 1 << 5;
            QTest::newRow("the user logs off") << 5 << 2;
            QTest::newRow("the system shuts down") << 6 << 2;
        }
    }
    void aJobStopsInTimeForTheCleanUp()
    {
        QFETCH(int, cause);
        QFETCH(int, seconds);
        QVERIFY(timeToStop(cause) == std::chrono::seconds(seconds));
    }

    void anOpenGateLetsEveryoneThrough()
    {
        GatedJob &job = GatedJob::start([](JobGate &gate) {
            for (int i = 0; i < 1000; ++i) {
                gate.pass();
            }
        });
        QVERIFY(job.isThroughWithin(hangLimit));
    }

    void aClosedGateStopsTheJob_data()
    {
        QTest::addColumn<Way>("way");
        QTest::newRow("in the middle of many steps") << Way([](JobGate &gate) {
            for (;;) {
                gate.pass();
            }
        });
        QTest::newRow("when it comes long after the closing") << Way([](JobGate &gate) {
            std::this_thread::sleep_for(300ms); // works, and passes no gate during this time
            gate.pass();
        });
    }
    void aClosedGateStopsTheJob()
    {
        QFETCH(Way, way);
        GatedJob &job = GatedJob::start(way);
        QVERIFY(!job.isThroughWithin(50ms)); // the job still runs, or is in its pause
        QVERIFY(job.gate.close(hangLimit));
        QVERIFY(!job.isThroughWithin(100ms));
        // The gate stays closed: a second call returns the same at once.
        QVERIFY(job.gate.close(0ms));
    }

    void aJobThatDoesNotComeIsWaitedForAsLongAsWasSaid()
    {
        JobGate gate;
        QElapsedTimer elapsed;
        elapsed.start();
        QVERIFY(!gate.close(50ms));
        QVERIFY2(elapsed.elapsed() >= 50, qPrintable(QString::number(elapsed.elapsed())));
    }

    void aJobThatIsThroughBeforeTheClosingDoesNotCome()
    {
        GatedJob &job = GatedJob::start([](JobGate &gate) { gate.pass(); });
        QVERIFY(job.isThroughWithin(hangLimit));
        QVERIFY(!job.gate.close(10ms));
    }
};

QTEST_APPLESS_MAIN(TestJobGate)
#include "tst_jobgate.moc"
