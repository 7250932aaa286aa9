// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/support/waiting.h"

#include <QTest>
#include <QThread>

#include <array>
#include <atomic>
#include <memory>

namespace {

std::atomic<int> whole = 0;
std::atomic<int> spoilt = 0;

// Checks its own content in its destructor.
class Witness
{
public:
    Witness() { m_words.fill(pattern); }
    ~Witness()
    {
        for (const quint64 word : m_words) {
            if (word != pattern) {
                ++spoilt;
                return;
            }
        }
        ++whole;
    }
    Witness(const Witness &) = delete;
    Witness &operator=(const Witness &) = delete;

    bool isThere() const { return m_words.front() == pattern; }

private:
    static constexpr quint64 pattern = 0x5EED'F00D'CAFE'1234;
    std::array<quint64, 64> m_words{};
};

thread_local Witness witness;

} // namespace

// In our builds, a thread's variables exist until their destructors have run.
class TestThreadLocals : public QObject
{
    Q_OBJECT

private slots:
    void destructorsFindTheirVariables()
    {
        constexpr int threads = 20;
        for (int i = 0; i < threads; ++i) {
            bool seen = false;
            const std::unique_ptr<QThread> thread(
                QThread::create([&seen] { seen = witness.isThere(); }));
            thread->start();
            QVERIFY(thread->wait());
            QVERIFY(seen);
        }
        WAIT_COMPARE(whole + spoilt, threads); // after wait() the destructors may still be running
        QCOMPARE(spoilt.load(), 0);
    }
};

QTEST_GUILESS_MAIN(TestThreadLocals)
#include "tst_threadlocals.moc"
