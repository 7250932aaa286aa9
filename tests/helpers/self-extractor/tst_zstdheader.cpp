// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/decoding/zstdheader.h"
#include "tests/helpers/self-extractor/zstdframes.h"

#include <QTest>

using zstdframes::frameHeader;

namespace {

constexpr quint64 kiB = 1024;
constexpr quint64 miB = 1024 * kiB;

quint64 windowOf(const QByteArray &begin, quint64 unpackSize)
{
    return sfx::zstdWindowSize(reinterpret_cast<const std::uint8_t *>(begin.constData()),
                               static_cast<std::size_t>(begin.size()), unpackSize);
}

// The window byte of 2^log bytes.
quint8 windowByte(int log)
{
    return static_cast<quint8>((log - 10) << 3);
}

} // namespace

// The window that the beginning of a packed stream announces.
class TestZstdHeader : public QObject
{
    Q_OBJECT

private slots:
    void tellsTheWindow_data();
    void tellsTheWindow();
    void agreesWithThePacker_data();
    void agreesWithThePacker();
    void needsTheWholeHeader();
};

void TestZstdHeader::tellsTheWindow_data()
{
    QTest::addColumn<QByteArray>("begin");
    QTest::addColumn<quint64>("unpackSize");
    QTest::addColumn<quint64>("window");
    const auto row = [](const char *name, const QByteArray &begin, quint64 size, quint64 window) {
        QTest::newRow(name) << begin << size << window;
    };
    row("a window of 1 MiB", frameHeader(windowByte(20), 5 * miB), 5 * miB, miB);
    row("a window between two powers", frameHeader(windowByte(20) + 3, 5 * miB), 5 * miB,
        miB + 3 * miB / 8);
    row("the smallest window", frameHeader(0, 5 * miB), 5 * miB, kiB);
    row("the largest window", frameHeader(0xff, ~0ull), ~0ull, 15ull << 38);
    row("a window larger than the data", frameHeader(windowByte(27), 5 * miB), 5 * miB, 5 * miB);
    row("no window, but the content", frameHeader({}, 5 * miB), 5 * miB, 5 * miB);
    row("no window for a huge content", frameHeader({}, 1ull << 40), 1ull << 40, 1ull << 40);
    row("a content that is too large", frameHeader({}, ~0ull), 5 * miB, 5 * miB);
    row("a content that is not known", frameHeader(windowByte(23), {}), 50 * miB, 8 * miB);
    row("a dictionary", frameHeader(windowByte(20), 5 * miB, 77), 5 * miB, miB);
    row("a dictionary, and no window", frameHeader({}, 5 * miB, 77), 5 * miB, 5 * miB);
    row("the first of several frames", frameHeader(windowByte(20), 5 * miB), 500 * miB, 128 * miB);
    row("the first of several small frames", frameHeader({}, 5 * miB), 6 * miB, 6 * miB);
    row("an empty frame first", frameHeader({}, 0), 6 * miB, 6 * miB);
    row("a skippable frame", zstdframes::skippableFrame("0123456789"), 500 * miB, 128 * miB);
    row("a skippable frame, and little data", zstdframes::skippableFrame("0123456789"), 5 * miB,
        5 * miB);
    row("no frame", "something else, but long enough", 500 * miB, 128 * miB);
    row("nothing", "", 500 * miB, 128 * miB);
    row("no data", frameHeader({}, 0), 0, 0);
    // The content size in one and two bytes, as the library writes it.
    row("a content of 255 bytes", QByteArray::fromHex("28b52ffd20ff0000"), 255, 255);
    row("a content of 256 bytes", QByteArray::fromHex("28b52ffd6000000000"), 256, 256);
    row("a content of 65791 bytes", QByteArray::fromHex("28b52ffd60ffff0000"), 65791, 65791);
}

void TestZstdHeader::tellsTheWindow()
{
    QFETCH(QByteArray, begin);
    QFETCH(quint64, unpackSize);
    QTEST(windowOf(begin, unpackSize), "window");
}

void TestZstdHeader::agreesWithThePacker_data()
{
    QTest::addColumn<qsizetype>("size");
    for (const qsizetype size : {0, 1, 255, 256, 257, 65791, 65792, 70000, 2000000}) {
        QTest::addRow("%lld bytes", static_cast<long long>(size)) << size;
    }
}

void TestZstdHeader::agreesWithThePacker()
{
    QFETCH(qsizetype, size);
    const QByteArray content(size, 'x');
    const auto unpackSize = static_cast<quint64>(size);
    QCOMPARE(windowOf(zstdframes::frameOf(content), unpackSize), unpackSize);
    // 128 KiB are the window if the packer is asked for it and does not know the size.
    const QByteArray frame
        = zstdframes::frameOf(content, {.windowLog = 17, .hasContentSize = false});
    QCOMPARE(windowOf(frame, unpackSize), qMin(unpackSize, 128 * kiB));
}

// Nothing is read beyond the bytes that are there.
void TestZstdHeader::needsTheWholeHeader()
{
    const QByteArray header = frameHeader(windowByte(20), 500 * miB, 77);
    QCOMPARE(header.size(), qsizetype(sfx::zstdHeaderSize));
    QCOMPARE(windowOf(header, 500 * miB), miB);
    for (qsizetype size = 0; size < header.size(); ++size) {
        QCOMPARE(windowOf(header.left(size), 500 * miB), 128 * miB);
    }
}

QTEST_APPLESS_MAIN(TestZstdHeader)
#include "tst_zstdheader.moc"
