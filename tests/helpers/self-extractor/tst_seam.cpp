// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/core/filteredblock.h"
#include "helpers/self-extractor/core/methods.h"

#include <QByteArray>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <cstring>

using namespace sfx;

namespace {

const std::uint8_t *bytesOf(const QByteArray &bytes)
{
    return reinterpret_cast<const std::uint8_t *>(bytes.constData());
}

Owned<MemoryStream> streamOf(const QByteArray &bytes)
{
    return makeOwned<MemoryStream>(bytesOf(bytes), static_cast<std::size_t>(bytes.size()));
}

// Reads `size` bytes, in pieces of changing sizes.
QByteArray take(Stream &stream, qsizetype size)
{
    QByteArray bytes(size, '\0');
    qsizetype done = 0;
    for (qsizetype piece = 1; done < size; piece = piece * 7 % 9973 + 1) {
        Bytes got;
        const auto wanted = static_cast<std::size_t>(std::min(piece, size - done));
        if (stream.next(wanted, got) != Status::Ok || got.size == 0) {
            return QByteArray();
        }
        std::memcpy(bytes.data() + done, got.data, got.size);
        done += static_cast<qsizetype>(got.size);
    }
    return bytes;
}

QByteArray filteredWhole(const QByteArray &bytes)
{
    FilterStream filter(streamOf(bytes));
    return filter.open(method::X86, nullptr, 0) == Status::Ok ? take(filter, bytes.size())
                                                              : QByteArray();
}

// In blocks that end at the borders, one after the other; the seams at last, as the blocks' files do.
QByteArray filteredInBlocks(const QByteArray &bytes, const QList<qsizetype> &borders)
{
    QByteArray result;
    Owned<Seam> before;
    qsizetype begin = 0;
    for (qsizetype border : borders + QList<qsizetype>{bytes.size()}) {
        const bool isLast = border == bytes.size();
        const QByteArray content = bytes.mid(begin, border - begin);
        FilteredBlock block(streamOf(content), static_cast<std::uint64_t>(begin));
        if (block.open(before ? &*before : nullptr) != Status::Ok) {
            return QByteArray();
        }
        qsizetype size = content.size() - (isLast ? 0 : qsizetype(Seam::before));
        if (before) {
            size -= qsizetype(Seam::behind);
        }
        const QByteArray body = take(block, size);
        Owned<Seam> behind = makeOwned<Seam>();
        if (!behind || body.size() != size || (!isLast && block.finish(*behind) != Status::Ok)) {
            return QByteArray();
        }
        if (before) {
            before->close(static_cast<std::uint64_t>(begin));
            result += QByteArray(reinterpret_cast<const char *>(before->bytes()), Seam::size);
        }
        result += body;
        before = std::move(behind);
        begin = border;
    }
    return result;
}

// Opcodes and the outer bytes of short distances more often than they are, or not at all.
QByteArray code(qsizetype size, quint32 seed, double opcodes, double outerBytes)
{
    QRandomGenerator random(seed);
    QByteArray bytes(size, '\0');
    for (char &byte : bytes) {
        const double chosen = random.generateDouble();
        const auto any = static_cast<std::uint8_t>(random.generate());
        if (chosen < opcodes) {
            byte = static_cast<char>(0xe8 | (any & 1));
        } else if (chosen < opcodes + outerBytes) {
            byte = static_cast<char>((any & 1) != 0 ? 0xff : 0);
        } else {
            byte = static_cast<char>(any);
        }
    }
    return bytes;
}

} // namespace

class TestSeam : public QObject
{
    Q_OBJECT

private slots:
    void findsFreshStarts_data();
    void findsFreshStarts();
    void filtersAsWithoutBorders_data();
    void filtersAsWithoutBorders();
    void filtersBlocksThatEndWithTheBuffer();
    void doesNotWaitForeverForWhatFailed();
    void noticesABlockThatIsTooShort();
};

void TestSeam::findsFreshStarts_data()
{
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<int>("start");
    QTest::newRow("no opcode") << QByteArray(8, '\x90') << 5;
    QTest::newRow("a call at once") << QByteArray("\xe8") + QByteArray(8, '\0') << 6;
    QTest::newRow("a jump in the fifth byte")
        << QByteArray(4, '\x90') + '\xe9' + QByteArray(8, '\0') << 10;
    QTest::newRow("opcodes in the fourth and eighth")
        << QByteArray("\1\2\3\xe8\1\2\3\xe8") + QByteArray(8, '\1') << 13;
    QTest::newRow("other opcodes") << QByteArray("\xe7\xea\xeb\xcc\x68\x66") << 5;
    QTest::newRow("only opcodes") << QByteArray(4096, '\xe8') << 4096;
    QTest::newRow("opcodes up to the fifth byte before the end")
        << QByteArray(4091, '\xe8') + QByteArray(5, '\0') << 4096;
    QTest::newRow("opcodes up to the sixth byte before the end")
        << QByteArray(4090, '\xe8') + QByteArray(6, '\0') << 4095;
}

void TestSeam::findsFreshStarts()
{
    QFETCH(QByteArray, first);
    QFETCH(int, start);
    std::uint8_t bytes[Seam::behind] = {};
    std::copy_n(bytesOf(first), first.size(), bytes);
    QCOMPARE(Seam::findFreshStart(bytes), std::size_t(start));
}

void TestSeam::filtersAsWithoutBorders_data()
{
    QTest::addColumn<double>("opcodes");
    QTest::addColumn<double>("outerBytes");
    QTest::newRow("noise") << 0.0 << 0.0;
    QTest::newRow("as code is") << 0.02 << 0.1;
    QTest::newRow("many calls") << 0.2 << 0.5;
    QTest::newRow("calls everywhere, hardly a fresh start") << 0.8 << 0.15;
    QTest::newRow("nothing but calls and no fresh start") << 0.95 << 0.05;
}

void TestSeam::filtersAsWithoutBorders()
{
    QFETCH(double, opcodes);
    QFETCH(double, outerBytes);
    int changed = 0;
    for (quint32 seed = 1; seed <= 300; ++seed) {
        const QByteArray bytes = code(40000 + seed, seed, opcodes, outerBytes);
        const QList<qsizetype> borders{8000 + seed * 7 % 1000, 20000 + seed * 13 % 9000};
        const QByteArray whole = filteredWhole(bytes);
        QCOMPARE(whole.size(), bytes.size());
        QVERIFY2(filteredInBlocks(bytes, borders) == whole, qPrintable(QString::number(seed)));
        changed += whole != bytes;
    }
    QVERIFY2(changed > 150, qPrintable(QString::number(changed)));
}

// The filter goes through its bytes in pieces of 64 KiB.
void TestSeam::filtersBlocksThatEndWithTheBuffer()
{
    for (quint32 seed = 0; seed < 120; ++seed) {
        const QByteArray bytes = code(80000, seed, 0.2, 0.5);
        const QList<qsizetype> borders{65536 - 2 + seed % 12};
        QVERIFY2(filteredInBlocks(bytes, borders) == filteredWhole(bytes),
                 qPrintable(QString::number(seed)));
    }
}

void TestSeam::doesNotWaitForeverForWhatFailed()
{
    const QByteArray bytes(20000, '\xe8');
    Seam seam;
    seam.abandon();
    FilteredBlock block(streamOf(bytes), 100000);
    QCOMPARE(block.open(&seam), Status::Cancelled);
}

void TestSeam::noticesABlockThatIsTooShort()
{
    const QByteArray bytes(4095, '\0');
    Seam seam;
    FilteredBlock second(streamOf(bytes), 100000);
    QCOMPARE(second.open(&seam), Status::Damaged);

    const QByteArray seven(7, '\0');
    FilteredBlock first(streamOf(seven), 0);
    QCOMPARE(first.open(nullptr), Status::Ok);
    QCOMPARE(first.finish(seam), Status::Damaged);
}

QTEST_APPLESS_MAIN(TestSeam)
#include "tst_seam.moc"
