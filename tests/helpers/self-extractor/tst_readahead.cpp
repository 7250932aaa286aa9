// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/decoding/readahead.h"
#include "tests/support/waiting.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <atomic>

using namespace sfx;

namespace {

constexpr quint64 mebibyte = 1024 * 1024;
constexpr quint64 pieceSize = mebibyte / 4;
constexpr quint64 mostAhead = 4 * mebibyte;

// A stream whose bytes encode their offset, in pieces of changing size. It ends with the given
// status.
class CountingStream final : public WindowStream
{
public:
    CountingStream(std::uint64_t size, Status end, std::atomic<std::uint64_t> &served,
                   std::size_t window = mostAhead)
        : m_size(size)
        , m_end(end)
        , m_served(served)
        , m_window(static_cast<qsizetype>(window), '\0')
    {
    }

    static std::uint8_t byteAt(std::uint64_t place)
    {
        return static_cast<std::uint8_t>(place ^ (place >> 8) ^ (place >> 17));
    }

    Status next(std::size_t limit, ByteView &bytes) override
    {
        const std::uint64_t begin = m_served;
        m_place = m_place == windowSize() || begin == m_restart ? 0 : m_place;
        const std::size_t size = static_cast<std::size_t>(std::min<std::uint64_t>(
            {limit, 1 + m_random.bounded(200000u), untilRestart(), windowSize() - m_place}));
        auto *data = reinterpret_cast<std::uint8_t *>(m_window.data()) + m_place;
        for (std::size_t i = 0; i < size; ++i) {
            data[i] = byteAt(begin + i);
        }
        bytes = {data, size};
        m_place += size;
        m_served = begin + size;
        return size == 0 ? m_end : Status::Ok;
    }
    std::size_t freeSpace(std::size_t unread) const override
    {
        return m_served == m_restart && unread != 0 ? 0 : windowSize() - unread;
    }

    // After this many bytes the stream begins at the beginning of its window again.
    void restartAfter(std::uint64_t bytes) { m_restart = bytes; }

private:
    std::size_t windowSize() const { return static_cast<std::size_t>(m_window.size()); }
    std::uint64_t untilRestart() const
    {
        return (m_served < m_restart ? std::min(m_restart, m_size) : m_size) - m_served;
    }

    std::uint64_t m_size;
    Status m_end;
    std::atomic<std::uint64_t> &m_served;
    QByteArray m_window;
    std::size_t m_place = 0;
    std::uint64_t m_restart = ~std::uint64_t(0);
    QRandomGenerator m_random{7};
};

bool isRight(const ByteView &bytes, std::uint64_t place)
{
    return std::all_of(bytes.data, bytes.data + bytes.size, [&place](std::uint8_t byte) {
        return byte == CountingStream::byteAt(place++);
    });
}

} // namespace

class TestReadAhead : public QObject
{
    Q_OBJECT

private slots:
    void givesTheSameBytes_data();
    void givesTheSameBytes();
    void givesErrorsAfterTheGoodBytes();
    void waitsBeforeTheWindowIsGivenUp();
    void keepsToItsWindow();
    void canBeLeftAtAnyTime();
};

void TestReadAhead::givesTheSameBytes_data()
{
    QTest::addColumn<quint64>("size");
    QTest::addColumn<quint32>("most"); // the most that is requested at once
    QTest::addColumn<quint64>("window");
    QTest::newRow("nothing") << quint64(0) << 1000u << mostAhead;
    QTest::newRow("one byte") << quint64(1) << 1000u << mostAhead;
    QTest::newRow("a piece but one byte") << pieceSize - 1 << 70000u << mostAhead;
    QTest::newRow("a piece") << pieceSize << 70000u << mostAhead;
    QTest::newRow("as much as is held") << mostAhead << 300000u << mostAhead;
    QTest::newRow("much, in small reads") << 13 * mebibyte + 5 << 5000u << mostAhead;
    QTest::newRow("much, in reads of more than a piece") << 40 * mebibyte << 3000000u << mostAhead;
    QTest::newRow("a window of no round size") << 9 * mebibyte << 100000u << pieceSize * 5 + 123;
    QTest::newRow("a window smaller than a piece") << 2 * mebibyte << 9000u << quint64(30001);
    QTest::newRow("a window of one byte") << quint64(300) << 10u << quint64(1);
}

void TestReadAhead::givesTheSameBytes()
{
    QFETCH(quint64, size);
    QFETCH(quint32, most);
    QFETCH(quint64, window);
    std::atomic<std::uint64_t> served = 0;
    ReadAhead stream(
        makeOwned<CountingStream>(size, Status::Ok, served, static_cast<std::size_t>(window)));
    QCOMPARE(stream.open(), Status::Ok);
    QRandomGenerator random(9);
    quint64 total = 0;
    ByteView bytes;
    do {
        QCOMPARE(stream.next(1 + random.bounded(most), bytes), Status::Ok);
        QVERIFY(bytes.size <= most);
        QVERIFY(isRight(bytes, total));
        total += bytes.size;
    } while (bytes.size != 0);
    QCOMPARE(total, size);
    QCOMPARE(stream.next(most, bytes), Status::Ok);
    QCOMPARE(bytes.size, std::size_t(0));
}

void TestReadAhead::givesErrorsAfterTheGoodBytes()
{
    for (const quint64 size : {quint64(0), quint64(500), pieceSize, 3 * mebibyte + 17}) {
        std::atomic<std::uint64_t> served = 0;
        ReadAhead stream(makeOwned<CountingStream>(size, Status::Damaged, served));
        QCOMPARE(stream.open(), Status::Ok);
        QByteArray buffer(static_cast<qsizetype>(8 * mebibyte), 0);
        auto *data = reinterpret_cast<std::uint8_t *>(buffer.data());
        std::size_t got = 0;
        QCOMPARE(readFully(stream, data, 8 * mebibyte, got), Status::Damaged);
        QCOMPARE(quint64(got), size);
        QVERIFY(isRight({data, got}, 0));
        ByteView bytes;
        QCOMPARE(stream.next(1, bytes), Status::Damaged);
        QCOMPARE(bytes.size, std::size_t(0));
    }
}

// As at the beginning of a new frame: the reader must have finished with the window.
void TestReadAhead::waitsBeforeTheWindowIsGivenUp()
{
    for (const quint64 restart : {quint64(1), quint64(700), pieceSize, 6 * mebibyte + 3}) {
        std::atomic<std::uint64_t> served = 0;
        auto counting = makeOwned<CountingStream>(9 * mebibyte, Status::Ok, served);
        counting->restartAfter(restart);
        ReadAhead stream(std::move(counting));
        QCOMPARE(stream.open(), Status::Ok);
        quint64 total = 0;
        ByteView bytes;
        do {
            QCOMPARE(stream.next(150000, bytes), Status::Ok);
            QVERIFY(isRight(bytes, total));
            total += bytes.size;
            QVERIFY(total > restart || served <= restart);
        } while (bytes.size != 0);
        QCOMPARE(total, 9 * mebibyte);
    }
}

// The decoder runs ahead, but does not overwrite bytes that the reader still uses.
void TestReadAhead::keepsToItsWindow()
{
    std::atomic<std::uint64_t> served = 0;
    ReadAhead stream(makeOwned<CountingStream>(1000 * mebibyte, Status::Ok, served));
    QCOMPARE(stream.open(), Status::Ok);
    quint64 total = 0;
    for (int i = 0; i < 40; ++i) {
        ByteView bytes;
        QCOMPARE(stream.next(pieceSize, bytes), Status::Ok);
        WAIT_VERIFY(served > total + mostAhead - pieceSize);
        if (i % 10 == 0) {
            QTest::qWait(20);
        }
        QVERIFY(served <= total + mostAhead);
        QVERIFY(isRight(bytes, total));
        total += bytes.size;
    }
}

void TestReadAhead::canBeLeftAtAnyTime()
{
    for (std::size_t size = 0; size < 8 * mebibyte; size += 200001) {
        std::atomic<std::uint64_t> served = 0;
        ReadAhead stream(makeOwned<CountingStream>(1000 * mebibyte, Status::Ok, served));
        QCOMPARE(stream.open(), Status::Ok);
        QByteArray buffer(static_cast<qsizetype>(size + 1), 0);
        std::size_t got = 0;
        QCOMPARE(readFully(stream, reinterpret_cast<std::uint8_t *>(buffer.data()), size, got),
                 Status::Ok);
    }
}

QTEST_GUILESS_MAIN(TestReadAhead)
#include "tst_readahead.moc"
