// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/base/sha256.h"

#include <QCryptographicHash>
#include <QTest>

using sfx::Sha256;

namespace {

QByteArray digestOf(const QByteArray &bytes, qsizetype piece)
{
    Sha256 hash;
    for (qsizetype at = 0; at < bytes.size(); at += piece) {
        const QByteArray part = bytes.mid(at, piece);
        hash.add(part.constData(), static_cast<std::size_t>(part.size()));
    }
    std::uint8_t digest[Sha256::digestSize];
    hash.finish(digest);
    return QByteArray(reinterpret_cast<const char *>(digest), sizeof digest).toHex();
}

} // namespace

class TestSha256 : public QObject
{
    Q_OBJECT

private slots:
    void givesTheStandardsExamples();
    void givesTheSameAsAnotherOne();
};

// NIST, "SHA256 examples".
void TestSha256::givesTheStandardsExamples()
{
    QCOMPARE(digestOf("abc", 1),
             QByteArray("ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"));
    QCOMPARE(digestOf("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq", 100),
             QByteArray("248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"));
    QCOMPARE(digestOf(QByteArray(1000000, 'a'), 1000),
             QByteArray("cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"));
}

// Every length around a block, in pieces of every length.
void TestSha256::givesTheSameAsAnotherOne()
{
    QByteArray bytes;
    for (int size = 0; size <= 200; ++size) {
        const QByteArray expected
            = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
        for (const qsizetype piece : {1, 7, 55, 56, 63, 64, 65, 200}) {
            QCOMPARE(digestOf(bytes, piece), expected);
        }
        bytes += static_cast<char>(size * 7);
    }
}

QTEST_APPLESS_MAIN(TestSha256)
#include "tst_sha256.moc"
