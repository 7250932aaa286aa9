// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/core/readahead.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <atomic>

using namespace sfx;

namespace {

constexpr quint64 mebibyte = 1024 * 1024;
constexpr quint64 pieceSize = mebibyte / 4;
constexpr quint64 mostAhead = 4 * mebibyte;

/// Bytes that tell their place, in pieces of changing size, with an end of a chosen kind.
class CountingStream final : public Stream
{
public:
    CountingStream(std::uint64_t size, Status end, std::atomic<std::uint64_t> &served)
        : m_size(size)
        , m_end(end)
        , m_served(served)
    {
    }

    static std::uint8_t byteAt(std::uint64_t place)
    {
        return static_cast<std::uint8_t>(place ^ (place >> 8) ^ (place >> 17));
    }

    Status read(std::uint8_t *data, std::size_t capacity, std::size_t &got) override
    {
        const std::uint64_t begin = m_served;
        got = std::min<std::size_t>(capacity, 1 + m_random.bounded(200000u));
        got = static_cast<std::size_t>(std::min<std::uint64_t>(got, m_size - begin));
        for (std::size_t i = 0; i < got; ++i) {
            data[i] = byteAt(begin + i);
        }
        m_served = begin + got;
        return got == 0 ? m_end : Status::Ok;
    }

private:
    std::uint64_t m_size;
    Status m_end;
    std::atomic<std::uint64_t> &m_served;
    QRandomGenerator m_random{7};
};

bool isRight(const QByteArray &bytes, std::uint64_t place)
{
    for (const char byte : bytes) {
        if (static_cast<std::uint8_t>(byte) != CountingStream::byteAt(place++)) {
            return false;
        }
    }
    return true;
}

} // namespace

class TestReadAhead : public QObject
{
    Q_OBJECT

private slots:
    void givesTheSameBytes_data();
    void givesTheSameBytes();
    void givesErrorsBehindTheGoodBytes();
    void keepsToItsMemory();
    void canBeLeftAtAnyTime();
};

void TestReadAhead::givesTheSameBytes_data()
{
    QTest::addColumn<quint64>("size");
    QTest::addColumn<quint32>("most"); // that is asked for at once
    QTest::newRow("nothing") << quint64(0) << 1000u;
    QTest::newRow("one byte") << quint64(1) << 1000u;
    QTest::newRow("a piece but one byte") << pieceSize - 1 << 70000u;
    QTest::newRow("a piece") << pieceSize << 70000u;
    QTest::newRow("as much as is held") << mostAhead << 300000u;
    QTest::newRow("much, in small reads") << 13 * mebibyte + 5 << 5000u;
    QTest::newRow("much, in reads of more than a piece") << 40 * mebibyte << 3000000u;
}

void TestReadAhead::givesTheSameBytes()
{
    QFETCH(quint64, size);
    QFETCH(quint32, most);
    std::atomic<std::uint64_t> served = 0;
    ReadAhead stream(makeOwned<CountingStream>(size, Status::Ok, served));
    QCOMPARE(stream.open(), Status::Ok);
    QRandomGenerator random(9);
    QByteArray buffer(static_cast<qsizetype>(most), 0);
    auto *data = reinterpret_cast<std::uint8_t *>(buffer.data());
    quint64 total = 0;
    std::size_t got = 0;
    do {
        QCOMPARE(stream.read(data, 1 + random.bounded(most), got), Status::Ok);
        QVERIFY(isRight(buffer.left(static_cast<qsizetype>(got)), total));
        total += got;
    } while (got != 0);
    QCOMPARE(total, size);
    QCOMPARE(stream.read(data, most, got), Status::Ok);
    QCOMPARE(got, std::size_t(0));
}

void TestReadAhead::givesErrorsBehindTheGoodBytes()
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
        QVERIFY(isRight(buffer.left(static_cast<qsizetype>(got)), 0));
        QCOMPARE(stream.read(data, 1, got), Status::Damaged);
        QCOMPARE(got, std::size_t(0));
    }
}

// The other stage runs ahead, but only so far.
void TestReadAhead::keepsToItsMemory()
{
    std::atomic<std::uint64_t> served = 0;
    ReadAhead stream(makeOwned<CountingStream>(1000 * mebibyte, Status::Ok, served));
    QCOMPARE(stream.open(), Status::Ok);
    QTRY_COMPARE(served.load(), std::uint64_t(mostAhead));
    std::uint8_t byte = 0;
    std::size_t got = 0;
    QCOMPARE(stream.read(&byte, 1, got), Status::Ok);
    QTest::qWait(50);
    QCOMPARE(served.load(), std::uint64_t(mostAhead));
    QByteArray buffer(static_cast<qsizetype>(mebibyte), 0);
    QCOMPARE(readFully(stream, reinterpret_cast<std::uint8_t *>(buffer.data()), mebibyte, got),
             Status::Ok);
    QTRY_COMPARE(served.load(), std::uint64_t(mostAhead + mebibyte));
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
