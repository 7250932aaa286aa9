// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/decoding/readahead.h"
#include "helpers/self-extractor/decoding/zstdheader.h"
#include "helpers/self-extractor/decoding/zstdstream.h"
#include "tests/helpers/self-extractor/countedmemory.h"
#include "tests/helpers/self-extractor/sfxtest.h"
#include "tests/helpers/self-extractor/zstdframes.h"

#include <QList>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <cstring>
#include <memory>

using namespace sfx;
using zstdframes::block;
using zstdframes::frameHeader;
using zstdframes::frameOf;
using zstdframes::framesOf;
using zstdframes::skippableFrame;

namespace {

constexpr quint64 kiB = 1024;
constexpr quint64 miB = 1024 * kiB;

// Hands out bytes in pieces of random size, each in its own memory, so that a sanitizer sees an
// access beyond it.
class PieceStream final : public Stream
{
public:
    PieceStream(const QByteArray &bytes, quint32 seed) : m_bytes(bytes), m_random(seed) {}

    Status next(std::size_t limit, ByteView &view) override
    {
        const qsizetype most = m_random.bounded(3) == 0 ? 20 : 100000;
        const qsizetype size = qMin(m_bytes.size() - m_at, 1 + m_random.bounded(most));
        view = ByteView();
        if (size != 0) {
            view.size = qMin(limit, static_cast<std::size_t>(size));
            m_piece = std::make_unique<std::uint8_t[]>(view.size);
            std::memcpy(m_piece.get(), m_bytes.constData() + m_at, view.size);
            view.data = m_piece.get();
            m_at += static_cast<qsizetype>(view.size);
        }
        return Status::Ok;
    }

private:
    QByteArray m_bytes;
    QRandomGenerator m_random;
    qsizetype m_at = 0;
    std::unique_ptr<std::uint8_t[]> m_piece;
};

std::uint64_t windowOf(const QByteArray &frames, quint64 unpackSize)
{
    return zstdWindowSize(reinterpret_cast<const std::uint8_t *>(frames.constData()),
                          static_cast<std::size_t>(frames.size()), unpackSize);
}

Owned<ZstdStream> openStream(const QByteArray &frames, quint64 unpackSize, quint32 seed,
                             Status &status, Array<std::uint8_t> *spareWindow = nullptr)
{
    auto stream
        = makeOwned<ZstdStream>(makeOwned<PieceStream>(frames, seed), unpackSize, spareWindow);
    status = stream->open(windowOf(frames, unpackSize));
    return stream;
}

// Decodes everything, with requests of random size, and reads on until the end is reported.
Status decode(const QByteArray &frames, quint64 unpackSize, quint32 seed, QByteArray &content,
              Array<std::uint8_t> *spareWindow = nullptr)
{
    content.clear();
    Status status = Status::Ok;
    const Owned<ZstdStream> stream = openStream(frames, unpackSize, seed, status, spareWindow);
    QRandomGenerator random(seed);
    while (status == Status::Ok) {
        ByteView bytes;
        status = stream->next(1 + random.bounded(300000u), bytes);
        if (status == Status::Ok && bytes.size == 0) {
            return static_cast<quint64>(content.size()) == unpackSize ? status
                                                                      : Status::WriteFailed;
        }
        content.append(reinterpret_cast<const char *>(bytes.data),
                       static_cast<qsizetype>(bytes.size));
    }
    return status;
}

Status decode(const QByteArray &frames, const QByteArray &content)
{
    QByteArray output;
    const Status status = decode(frames, static_cast<quint64>(content.size()), 1, output);
    return status == Status::Ok && output != content ? Status::WriteFailed : status;
}

// Text, machine code and noise: literals, matches of every distance, repeats.
QByteArray mixedContent()
{
    QByteArray content;
    for (const QByteArray &file : mixedTree()) {
        content += file.left(160000);
    }
    return content + noise(50000, 3) + QByteArray(400000, 'r') + content.left(300000);
}

// The same bytes come back after almost `distance` bytes.
QByteArray distantRepeats(qsizetype distance, int count)
{
    QByteArray content;
    const QByteArray part = noise(distance - 1000, 5);
    for (int i = 0; i < count; ++i) {
        content += part + noise(500, static_cast<quint32>(i));
    }
    return content;
}

} // namespace

// Compares the decoder with Zstandard's own library.
class TestZstdDecoder : public QObject
{
    Q_OBJECT

private slots:
    void decodesAsTheReference_data();
    void decodesAsTheReference();
    void refusesFrames_data();
    void refusesFrames();
    void refusesEveryTruncation_data() { addPackings(); }
    void refusesEveryTruncation();
    void acceptsNoOtherContentThanTheReference_data() { addPackings(); }
    void acceptsNoOtherContentThanTheReference();
    void acceptsNoNoise();
    void keepsToItsWindow_data();
    void keepsToItsWindow();
    void takesTheSpareWindow();
    void leavesUnreadBytesAlone_data() { decodesAsTheReference_data(); }
    void leavesUnreadBytesAlone();
    void runsAhead_data() { decodesAsTheReference_data(); }
    void runsAhead();

private:
    static void addPackings();
};

void TestZstdDecoder::decodesAsTheReference_data()
{
    QTest::addColumn<QByteArray>("frames");
    QTest::addColumn<QByteArray>("content");
    const QByteArray mixed = mixedContent();
    const auto row = [](const char *name, const QByteArray &frames, const QByteArray &content) {
        QTest::newRow(name) << frames << content;
    };
    for (const int level : {-5, 1, 3, 9, 15, 19}) {
        QTest::addRow("level %d", level) << frameOf(mixed, {.level = level}) << mixed;
    }
    for (const int log : {10, 11, 15, 17, 18, 19, 20}) {
        QTest::addRow("a window of 2^%d", log) << frameOf(mixed, {.windowLog = log}) << mixed;
        QTest::addRow("a window of 2^%d, content size not known", log)
            << frameOf(mixed, {.windowLog = log, .hasContentSize = false}) << mixed;
    }
    row("a check sum", frameOf(mixed, {.hasCheckSum = true}), mixed);
    row("a check sum and a small window",
        frameOf(mixed, {.windowLog = 16, .hasContentSize = false, .hasCheckSum = true}), mixed);
    row("frames of 100000 bytes", framesOf(mixed, 100000), mixed);
    row("frames of 1 byte", framesOf(mixed.left(2000), 1), mixed.left(2000));
    row("frames with small windows", framesOf(mixed, 500000, {.windowLog = 17}), mixed);
    row("frames that do not know their size",
        framesOf(mixed, 300000, {.windowLog = 18, .hasContentSize = false}), mixed);
    row("a skippable frame before", skippableFrame("1234") + frameOf(mixed), mixed);
    row("skippable frames between",
        frameOf("a") + skippableFrame("") + skippableFrame(noise(300000, 4)) + frameOf("b"), "ab");
    row("an empty frame before", frameOf("") + frameOf(mixed), mixed);
    row("noise", frameOf(noise(700001, 1)), noise(700001, 1));
    row("noise and a small window", frameOf(noise(700001, 1), {.windowLog = 17}), noise(700001, 1));
    row("one byte", frameOf("x"), "x");
    row("nothing", frameOf(""), "");
    const QByteArray far = distantRepeats(1 << 18, 9);
    row("repeats at the window's end", frameOf(far, {.level = 15, .windowLog = 18}), far);
    row("repeats at the window's end, content size not known",
        frameOf(far, {.level = 15, .windowLog = 18, .hasContentSize = false}), far);
    row("one byte many times, in blocks of every kind",
        frameHeader(quint8(0), 700) + block(1, 500, "r", false) + block(0, 0, "", false)
            + block(0, 100, QByteArray(100, 'r'), false) + block(1, 100, "r", false)
            + block(0, 0, "", true),
        QByteArray(700, 'r'));
}

void TestZstdDecoder::decodesAsTheReference()
{
    QFETCH(QByteArray, frames);
    QFETCH(QByteArray, content);
    QVERIFY(zstdframes::unpacked(frames) == content);
    for (quint32 seed = 1; seed <= 10; ++seed) {
        QByteArray output;
        QCOMPARE(decode(frames, static_cast<quint64>(content.size()), seed, output), Status::Ok);
        QVERIFY(output == content);
    }
}

void TestZstdDecoder::refusesFrames_data()
{
    QTest::addColumn<QByteArray>("frames");
    QTest::addColumn<quint64>("unpackSize");
    QTest::addColumn<Status>("status");
    const auto row = [](const char *name, const QByteArray &frames, quint64 size,
                        Status status = Status::Damaged) {
        QTest::newRow(name) << frames << size << status;
    };
    const QByteArray ten = "0123456789";
    const QByteArray frame = frameOf(ten);
    row("nothing", "", 10);
    row("zeros", QByteArray(100, '\0'), 10);
    row("only a header", frameHeader(quint8(0), 10), 10);
    row("a byte after the frame", frame + "x", 10);
    row("a frame after the last", frame + frame, 10);
    row("an empty frame after the last", frame + frameOf(""), 10);
    row("a skippable frame after the last", frame + skippableFrame("x"), 10);
    row("a byte between two frames", frame + "x" + frame, 20);
    row("zeros between two frames", frame + QByteArray(8, '\0') + frame, 20);
    row("a skippable frame that does not end", skippableFrame(ten).chopped(1) + frame, 10);
    row("a skippable frame of 4 GiB", QByteArray::fromHex("502a4d18ffffffff") + frame, 10);
    row("only a skippable frame", skippableFrame(ten), 10);
    row("a frame that is shorter than the archive says", frame, 11);
    row("a frame that is longer than the archive says", frame, 9);
    row("a content size that is too small", frameHeader({}, 9) + block(0, 10, ten, true), 10);
    row("a content size that is too large", frameHeader({}, 11) + block(0, 10, ten, true), 10);
    row("a content size of 16 EiB", frameHeader({}, ~0ull) + block(0, 10, ten, true), 10,
        Status::Unsupported);
    row("a last block that is not marked", frameHeader({}, 10) + block(0, 10, ten, false), 10);
    row("a block after the last", frameOf(ten) + block(0, 10, ten, true), 20);
    row("a type of block that there is not", frameHeader({}, 10) + block(3, 10, ten, true), 10);
    row("an empty packed block", frameHeader({}, 10) + block(2, 0, "", true), 10);
    row("a packed block of zeros", frameHeader({}, 10) + block(2, 10, QByteArray(10, '\0'), true),
        10);
    row("a block that is larger than 128 KiB",
        frameHeader({}, 200000) + block(0, 200000, QByteArray(200000, 'x'), true), 200000);
    row("a block that is larger than the window",
        frameHeader(quint8(0), 2000) + block(0, 2000, QByteArray(2000, 'x'), true), 2000);
    QByteArray reserved = frame;
    reserved[4] = static_cast<char>(reserved[4] | 8);
    row("the reserved bit", reserved, 10);
    row("an old version", QByteArray::fromHex("27b52ffd") + frame.mid(4), 10);
    QByteArray summed = frameOf(ten, {.hasCheckSum = true});
    summed.back() = static_cast<char>(summed.back() ^ 1);
    row("a wrong check sum", summed, 10);
    row("a dictionary", frameHeader(quint8(0), 10, 77) + block(0, 10, ten, true), 10,
        Status::Unsupported);
    row("a dictionary for the second frame",
        frame + frameHeader(quint8(0), 10, 77) + block(0, 10, ten, true), 20, Status::Unsupported);
    row("a distance into a dictionary that it does not name",
        frameOf(noise(1000, 1), {.dictionary = noise(1000, 1)}), 1000);
    const quint64 large = 5ull << 30;
    row("a window of 129 MiB", frameHeader(quint8((17 << 3) + 1), large), large,
        Status::Unsupported);
    row("no window for a large content", frameHeader({}, large), large, Status::Unsupported);
    row("the largest window", frameHeader(quint8(0xff), large), large, Status::Unsupported);
    row("a second frame with a larger window",
        frameOf(ten, {.windowLog = 10, .hasContentSize = false})
            + frameOf(ten, {.windowLog = 27, .hasContentSize = false}),
        2 * miB, Status::Unsupported);
    row("a second frame with a window that is too large",
        frame + frameHeader(quint8((17 << 3) + 1), large), large + 10, Status::Unsupported);
}

void TestZstdDecoder::refusesFrames()
{
    QFETCH(QByteArray, frames);
    QFETCH(quint64, unpackSize);
    for (quint32 seed = 1; seed <= 5; ++seed) {
        const std::size_t before = countedmemory::inUse();
        countedmemory::reset();
        QByteArray output;
        QTEST(decode(frames, unpackSize, seed, output), "status");
        QVERIFY(countedmemory::peak() - before < 1 * miB);
        QCOMPARE(countedmemory::inUse(), before);
    }
}

void TestZstdDecoder::addPackings()
{
    QTest::addColumn<QByteArray>("frames");
    QTest::addColumn<QByteArray>("content");
    const QByteArray content = mixedContent().left(400000) + mixedContent().right(400000);
    QTest::newRow("level 3") << frameOf(content) << content;
    QTest::newRow("level 19") << frameOf(content, {.level = 19}) << content;
    QTest::newRow("a small window") << frameOf(content, {.windowLog = 16}) << content;
    QTest::newRow("a small window, content size not known")
        << frameOf(content, {.windowLog = 16, .hasContentSize = false}) << content;
    QTest::newRow("several frames and check sums")
        << skippableFrame("x") + framesOf(content, 90000, {.hasCheckSum = true}) << content;
}

void TestZstdDecoder::refusesEveryTruncation()
{
    QFETCH(QByteArray, frames);
    QFETCH(QByteArray, content);
    QCOMPARE(decode(frames, content), Status::Ok);
    QList<qsizetype> lengths;
    for (qsizetype i = 0; i < 100; ++i) {
        lengths << frames.size() * i / 100 << i << frames.size() - 1 - i;
    }
    for (const qsizetype length : lengths) {
        QVERIFY2(decode(frames.left(length), content) == Status::Damaged,
                 qPrintable(QString::number(length)));
    }
}

// Flips single bits. If both decoders still accept the data, both get the same content; then the CRC
// of the archive finds the damage. Each of them refuses some tables that the other one accepts.
void TestZstdDecoder::acceptsNoOtherContentThanTheReference()
{
    QFETCH(QByteArray, frames);
    QFETCH(QByteArray, content);
    QRandomGenerator random(50);
    int refused = 0;
    for (int i = 0; i < 1000; ++i) {
        QByteArray damaged = frames;
        // Every third time near the beginning, where a distance can point before the first byte.
        const qsizetype at = random.bounded(i % 3 == 0 ? 200 : damaged.size());
        damaged[at] = static_cast<char>(damaged[at] ^ (1 << random.bounded(8)));
        QByteArray output;
        const Status status = decode(damaged, static_cast<quint64>(content.size()),
                                     static_cast<quint32>(i), output);
        refused += status == Status::Ok ? 0 : 1;
        const auto reference = status == Status::Ok ? zstdframes::unpacked(damaged) : std::nullopt;
        QVERIFY2(!reference || *reference == output, qPrintable(QString::number(at)));
    }
    QVERIFY2(refused > 200, qPrintable(QString::number(refused)));
}

// Blocks of noise that call themselves packed.
void TestZstdDecoder::acceptsNoNoise()
{
    for (quint32 seed = 1; seed <= 3000; ++seed) {
        QByteArray packed = noise(2000, seed);
        packed[0] = static_cast<char>(packed[0] & 3); // literals of every kind, but few of them
        const QByteArray frames = frameHeader(quint8(60), {}) + block(2, 2000, packed, true);
        QByteArray output;
        const Status status = decode(frames, 100000, seed, output);
        QVERIFY(status == Status::Damaged || zstdframes::unpacked(frames) == output);
    }
}

void TestZstdDecoder::keepsToItsWindow_data()
{
    QTest::addColumn<QByteArray>("frames");
    QTest::addColumn<quint64>("size");
    QTest::addColumn<quint64>("most");
    const QByteArray content = mixedContent().repeated(12); // about 17 MB
    const auto size = static_cast<quint64>(content.size());
    const auto row = [size](const char *name, const QByteArray &frames, quint64 most) {
        QTest::newRow(name) << frames << size << most;
    };
    row("a window of 64 KiB", frameOf(content, {.windowLog = 16}), 64 * kiB);
    row("a window of 1 MiB", frameOf(content, {.windowLog = 20}), miB);
    row("a window of 8 MiB, content size not known",
        frameOf(content, {.windowLog = 23, .hasContentSize = false}), 8 * miB);
    row("a window for everything", frameOf(content, {.windowLog = 27}), size);
    row("small frames", framesOf(content, 300000), size);
    row("a large window in the header",
        frameHeader(quint8(17 << 3), {}) + block(1, 100000, "x", true), size);
}

// The buffers and tables of the decoder need less than a MiB.
void TestZstdDecoder::keepsToItsWindow()
{
    QFETCH(QByteArray, frames);
    QFETCH(quint64, size);
    QFETCH(quint64, most);
    const std::size_t before = countedmemory::inUse();
    countedmemory::reset();
    QByteArray output;
    static_cast<void>(decode(frames, size, 1, output));
    QVERIFY2(countedmemory::peak() - before < most + miB,
             qPrintable(QString::number(countedmemory::peak() - before)));
}

// The memory of the first window is that of the others, until one needs more.
void TestZstdDecoder::takesTheSpareWindow()
{
    const QByteArray content = mixedContent();
    Array<std::uint8_t> spare;
    const auto fits = [&spare](const QByteArray &frames, const QByteArray &unpacked) {
        QByteArray output;
        return decode(frames, static_cast<quint64>(unpacked.size()), 1, output, &spare)
            == Status::Ok
            && output == unpacked;
    };
    QVERIFY(fits(frameOf(content, {.windowLog = 27}), content));
    const std::uint8_t *first = spare.data();
    QCOMPARE(spare.size(), static_cast<std::size_t>(content.size()));
    const QByteArray part = content.first(5000);
    QVERIFY(fits(frameOf(part, {}), part));
    QVERIFY(fits(frameOf(content, {.windowLog = 16}), content));
    QVERIFY(fits(frameOf(content, {.windowLog = 18, .hasContentSize = false}), content));
    QVERIFY(fits(framesOf(content, 100000), content));
    QCOMPARE(static_cast<const std::uint8_t *>(spare.data()), first);
    QCOMPARE(spare.size(), static_cast<std::size_t>(content.size()));
    const QByteArray twice = content + content;
    QVERIFY(fits(frameOf(twice, {.windowLog = 27}), twice));
    QCOMPARE(spare.size(), static_cast<std::size_t>(twice.size()));
    QByteArray output;
    QCOMPARE(decode(frameOf(content, {}).chopped(1), static_cast<quint64>(content.size()), 1,
                    output, &spare),
             Status::Damaged);
    QCOMPARE(spare.size(), static_cast<std::size_t>(twice.size()));
}

namespace {

// Bytes that the decoder has handed out, and what they were then.
struct Unread
{
    ByteView bytes;
    QByteArray copy;
};

bool isUnchanged(const Unread &unread)
{
    return std::memcmp(unread.bytes.data, unread.copy.constData(), unread.bytes.size) == 0;
}

} // namespace

// Keeps as many bytes unread as the stream allows.
void TestZstdDecoder::leavesUnreadBytesAlone()
{
    QFETCH(QByteArray, frames);
    QFETCH(QByteArray, content);
    QRandomGenerator random(2);
    Status status = Status::Ok;
    const Owned<ZstdStream> stream
        = openStream(frames, static_cast<quint64>(content.size()), 2, status);
    QList<Unread> queue; // the oldest first
    std::size_t unread = 0;
    qsizetype total = 0;
    while (status == Status::Ok) {
        std::size_t space = stream->freeSpace(unread);
        while (space == 0) {
            QVERIFY(!queue.isEmpty());
            unread -= queue.takeFirst().bytes.size;
            space = stream->freeSpace(unread);
        }
        ByteView bytes;
        status = stream->next(qMin(space, std::size_t(1 + random.bounded(200000u))), bytes);
        QVERIFY(std::all_of(queue.cbegin(), queue.cend(), isUnchanged));
        if (bytes.size == 0) {
            break;
        }
        const Unread piece{bytes,
                           QByteArray(reinterpret_cast<const char *>(bytes.data),
                                      static_cast<qsizetype>(bytes.size))};
        QVERIFY(content.mid(total, piece.copy.size()) == piece.copy);
        total += piece.copy.size();
        unread += bytes.size;
        queue << piece;
    }
    QCOMPARE(status, Status::Ok);
    QCOMPARE(total, content.size());
}

void TestZstdDecoder::runsAhead()
{
    QFETCH(QByteArray, frames);
    QFETCH(QByteArray, content);
    Status status = Status::Ok;
    ReadAhead ahead(openStream(frames, static_cast<quint64>(content.size()), 3, status));
    QCOMPARE(status, Status::Ok);
    QCOMPARE(ahead.open(), Status::Ok);
    QRandomGenerator random(3);
    QByteArray output;
    ByteView bytes;
    do {
        QCOMPARE(ahead.next(1 + random.bounded(50000u), bytes), Status::Ok);
        output.append(reinterpret_cast<const char *>(bytes.data),
                      static_cast<qsizetype>(bytes.size));
    } while (bytes.size != 0);
    QVERIFY(output == content);
}

QTEST_APPLESS_MAIN(TestZstdDecoder)
#include "tst_zstddecoder.moc"
