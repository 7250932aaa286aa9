// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/orderedoutput.h"

#include "platform/nativepath.h"
#include "tests/support/testfiles.h"

#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <thread>

using namespace fast;

// Blocks that are packed at the same time lie in the archive in their order.
class TestOrderedOutput : public QObject
{
    Q_OBJECT

private:
    static pe::ByteView view(const char *text)
    {
        return {reinterpret_cast<const std::uint8_t *>(text), qstrlen(text)};
    }

    QTemporaryDir m_temp;
    QString path() const { return m_temp.filePath("archive"); }

private slots:
    void laterBlocksWaitInMemory()
    {
        auto archive = ArchiveFile::create(toNativePath(path()));
        QVERIFY(!archive.hasFailed());
        OrderedOutput output(archive.value(), 100);
        QVERIFY(!output.write(1, view("d")).hasFailed());
        QVERIFY(!output.write(2, view("e")).hasFailed());
        QVERIFY(!output.write(0, view("a")).hasFailed());
        QVERIFY(!output.finish(2).hasFailed());
        QVERIFY(!output.write(0, view("bc")).hasFailed());
        QCOMPARE(archive.value().size(), std::uint64_t(3));
        QVERIFY(!output.finish(0).hasFailed());
        QVERIFY(!output.write(1, view("-")).hasFailed());
        QVERIFY(!output.finish(1).hasFailed());
        QVERIFY(!output.finish(3).hasFailed()); // an empty one
        archive.value().keep();
        QCOMPARE(readFile(path()), QByteArray("abcd-e"));
    }

    void manyThreadsAndLittleMemory()
    {
        auto archive = ArchiveFile::create(toNativePath(path()));
        QVERIFY(!archive.hasFailed());
        OrderedOutput output(archive.value(), 10);
        std::atomic<std::size_t> next = 0;
        std::atomic<bool> failed = false;
        constexpr std::size_t threadCount = 8;
        std::vector<std::thread> threads;
        threads.reserve(threadCount);
        for (std::size_t i = 0; i < threadCount; ++i) {
            threads.emplace_back([&] {
                for (std::size_t block = next++; block < 300; block = next++) {
                    const QByteArray text = QByteArray::number(int(block)) + ' ';
                    for (const char letter : text) {
                        const char bytes[] = {letter, 0};
                        failed = failed || output.write(block, view(bytes)).hasFailed();
                    }
                    failed = failed || output.finish(block).hasFailed();
                }
            });
        }
        for (std::thread &thread : threads) {
            thread.join();
        }
        QVERIFY(!failed);
        archive.value().keep();
        QByteArray expected;
        for (int block = 0; block < 300; ++block) {
            expected += QByteArray::number(block) + ' ';
        }
        QCOMPARE(readFile(path()), expected);
    }

    void anAbandonedOutputWakesThreadsThatWait()
    {
        auto archive = ArchiveFile::create(toNativePath(path()));
        QVERIFY(!archive.hasFailed());
        OrderedOutput output(archive.value(), 2);
        QVERIFY(!output.write(0, view("a")).hasFailed());
        bool failed = false;
        std::thread waiting([&] { failed = output.write(1, view("much")).hasFailed(); });
        output.abandon();
        waiting.join();
        QVERIFY(failed);
        QVERIFY(output.write(0, view("a")).hasFailed());
        QVERIFY(output.finish(0).hasFailed());
        QVERIFY(!QFile::exists(path()));
    }

    void anArchiveThatIsNotKeptIsRemoved()
    {
        {
            auto archive = ArchiveFile::create(toNativePath(path()));
            QVERIFY(!archive.hasFailed());
            QVERIFY(QFile::exists(path()));
        }
        QVERIFY(!QFile::exists(path()));
    }
};

QTEST_APPLESS_MAIN(TestOrderedOutput)
#include "tst_orderedoutput.moc"
