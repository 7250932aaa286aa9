// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/hostilerun.h"

#include <QTest>

using namespace sfx;

namespace {

constexpr quint64 huge = quint64(1) << 63;

// A header that claims to unpack to `size` bytes.
QByteArray headerThatUnpacksTo(quint64 size)
{
    const forge::Folder folder{.unpackSizes = {size}};
    return forge::archiveOf("x", forge::encodedHeader(folder, 0, 1, 0));
}

QByteArray packedHeaders(int depth)
{
    QByteArray packed = planWith({}).packed;
    QByteArray header = forge::headerOf(planWith({}));
    for (int i = 0; i < depth; ++i) {
        const auto size = static_cast<quint64>(header.size());
        const auto offset = static_cast<quint64>(packed.size());
        packed += header;
        header
            = forge::encodedHeader({.unpackSizes = {size}}, offset, size, forge::checkSum(header));
    }
    return forge::archiveOf(packed, header);
}

} // namespace

// An archive's header as a whole: its claimed place, its packing, and the memory needed to read it.
class TestHostileHeader : public QObject
{
    Q_OBJECT

private slots:
    void takesAPackedHeader();
    void refusesForgedStarts_data();
    void refusesForgedStarts();
    void boundsHeaders_data();
    void boundsHeaders();
    void boundsVeryManyNames();
};

void TestHostileHeader::takesAPackedHeader()
{
    QCOMPARE(runHostile(packedHeaders(1)).status, Status::Ok);
}

void TestHostileHeader::refusesForgedStarts_data()
{
    QTest::addColumn<QByteArray>("archive");
    QTest::addColumn<Status>("status");
    const QByteArray header = forge::headerOf(planWith({}));
    const QByteArray rest = planWith({}).packed + header;
    const quint64 offset = 16;
    const auto size = static_cast<quint64>(header.size());
    const quint32 sum = forge::checkSum(header);
    const auto row = [&](const char *name, quint64 at, quint64 length, Status status) {
        QTest::newRow(name) << forge::startHeader(at, length, sum, rest) << status;
    };
    row("the honest one", offset, size, Status::Ok);
    row("a header behind the file", offset + size, size, Status::Damaged);
    row("a header one byte too far", offset + 1, size, Status::Damaged);
    row("a header one byte too long", offset, size + 1, Status::Damaged);
    row("a header at 8 EiB", huge, size, Status::Damaged);
    row("a header in front of the file", quint64(0) - 16, size, Status::Damaged);
    row("a header of 8 EiB", offset, huge, Status::Damaged);
    row("offset and size whose sum is 0", quint64(0) - size, size, Status::Damaged);
    row("no header", 0, 0, Status::Damaged);
    row("a header that is another part", offset - 4, size, Status::Damaged);
    QByteArray later = forge::archiveOf(planWith({}));
    later[6] = 1;
    QTest::newRow("a later version of the format") << later << Status::Unsupported;
    later[0] = '8';
    QTest::newRow("another signature") << later << Status::Damaged;
    QTest::newRow("a start header alone") << forge::startHeader(0, 0, 0, {}) << Status::Damaged;
    QTest::newRow("nothing") << QByteArray() << Status::Damaged;
}

void TestHostileHeader::refusesForgedStarts()
{
    QFETCH(QByteArray, archive);
    QFETCH(Status, status);
    const HostileRun run = runHostile(archive);
    QCOMPARE(run.status, status);
    QCOMPARE(run.hasBegun, status == Status::Ok);
    QVERIFY2(run.peakMemory < 3u << 19, qPrintable(QString::number(run.peakMemory)));
}

void TestHostileHeader::boundsHeaders_data()
{
    QTest::addColumn<QByteArray>("archive");
    QTest::addColumn<Status>("status");
    QTest::addColumn<bool>("isRead");
    QTest::newRow("two headers, one in the other")
        << packedHeaders(2) << Status::Unsupported << true;
    QTest::newRow("a thousand headers, one in the other")
        << packedHeaders(1000) << Status::Unsupported << true;
    QTest::newRow("a header that unpacks to 1 GiB")
        << headerThatUnpacksTo(1u << 30) << Status::NoMemory << true;
    QTest::newRow("a header that unpacks to 256 MiB and a byte")
        << headerThatUnpacksTo((256u << 20) + 1) << Status::NoMemory << true;
    QTest::newRow("a header that unpacks to 8 EiB")
        << headerThatUnpacksTo(huge) << Status::NoMemory << true;
    QTest::newRow("a header that unpacks to nothing")
        << headerThatUnpacksTo(0) << Status::Damaged << true;
    QTest::newRow("a header of 64 MiB of zeros")
        << forge::archiveOf("", QByteArray(64 << 20, '\0')) << Status::Unsupported << true;
    QTest::newRow("a header of a byte more")
        << forge::archiveOf("", QByteArray((64 << 20) + 1, '\0')) << Status::Unsupported << false;
}

void TestHostileHeader::boundsHeaders()
{
    QFETCH(QByteArray, archive);
    QFETCH(bool, isRead);
    const HostileRun run = runHostile(archive);
    QTEST(run.status, "status");
    QVERIFY(!run.hasBegun);
    // The memory holds one copy of the header, but nothing for the sizes that it claims.
    const std::size_t most = (isRead ? static_cast<std::size_t>(archive.size()) : 0) + (1u << 19);
    QVERIFY2(run.peakMemory < most, qPrintable(QString::number(run.peakMemory)));
}

// Almost as many entries as the memory limit for tables allows. Comparing their names needs
// additional memory.
void TestHostileHeader::boundsVeryManyNames()
{
    constexpr int count = 7000000;
    forge::ArchivePlan plan({});
    plan.folderCount = 0;
    plan.fileCount = count;
    plan.hasNames = false;
    plan.furtherProperties = forge::property(14, QByteArray(count / 8, '\xff'))
        + forge::property(17, QByteArray(1, '\0') + QByteArray("a\0\0\0", 4).repeated(count));
    const HostileRun run = runHostile(forge::archiveOf(plan));
    QCOMPARE(run.status, Status::UnsafeName);
    QVERIFY(!run.hasBegun);
    QVERIFY2(run.peakMemory < 400u << 20, qPrintable(QString::number(run.peakMemory)));
    plan.fileCount = 2 * count;
    plan.furtherProperties = forge::property(14, QByteArray(2 * count / 8, '\xff'))
        + forge::property(17, QByteArray(1, '\0') + QByteArray("a\0\0\0", 4).repeated(2 * count));
    QCOMPARE(runHostile(forge::archiveOf(plan)).status, Status::NoMemory);
}

QTEST_APPLESS_MAIN(TestHostileHeader)
#include "tst_hostileheader.moc"
