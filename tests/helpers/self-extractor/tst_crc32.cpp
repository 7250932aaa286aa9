// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/base/crc32.h"

#include <QByteArray>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <vector>

using sfx::crc32;
using sfx::prepareCrc32;

namespace {

// Bit by bit, as the polynomial says.
std::uint32_t slowCrc(const std::uint8_t *data, std::size_t size)
{
    std::uint32_t sum = 0xffffffff;
    for (std::size_t i = 0; i < size; ++i) {
        sum ^= data[i];
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xedb88320 : 0);
        }
    }
    return ~sum;
}

std::vector<std::uint8_t> randomBytes(std::size_t size)
{
    QRandomGenerator random(1);
    std::vector<std::uint8_t> bytes(size);
    for (std::uint8_t &byte : bytes) {
        byte = static_cast<std::uint8_t>(random.generate());
    }
    return bytes;
}

} // namespace

// Less than 64 bytes go through the table, and so does everything on an old processor.
class TestCrc32 : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { prepareCrc32(); }
    void givesKnownSums();
    void readsAnyLengthFromAnyAddress();
    void continues();
};

void TestCrc32::givesKnownSums()
{
    QCOMPARE(crc32(0, "", 0), 0U);
    QCOMPARE(crc32(0, "123456789", 9), 0xcbf43926U); // the "check" of the catalogues of CRCs
    const QByteArray zeros(1000000, '\0');
    QCOMPARE(crc32(0, zeros.constData(), 1000000),
             slowCrc(reinterpret_cast<const std::uint8_t *>(zeros.constData()), 1000000));
}

void TestCrc32::readsAnyLengthFromAnyAddress()
{
    for (std::size_t size = 0; size <= 400; ++size) {
        const auto bytes = randomBytes(size + 16);
        for (std::size_t begin = 0; begin <= 16; ++begin) {
            // A copy that ends with the last byte, so that a sanitizer sees a read after it.
            const std::vector<std::uint8_t> part(bytes.begin(),
                                                 bytes.begin() + static_cast<int>(begin + size));
            QCOMPARE(crc32(0, part.data() + begin, size), slowCrc(part.data() + begin, size));
        }
    }
}

void TestCrc32::continues()
{
    const auto bytes = randomBytes(5000);
    const std::uint32_t expected = slowCrc(bytes.data(), bytes.size());
    for (const std::size_t piece : {1U, 15U, 63U, 64U, 65U, 127U, 128U, 200U, 1000U, 4999U}) {
        std::uint32_t sum = 0;
        for (std::size_t at = 0; at < bytes.size(); at += piece) {
            sum = crc32(sum, bytes.data() + at, std::min(piece, bytes.size() - at));
        }
        QCOMPARE(sum, expected);
    }
}

QTEST_APPLESS_MAIN(TestCrc32)
#include "tst_crc32.moc"
