// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/hostilerun.h"
#include "tests/helpers/self-extractor/sfxtest.h"

#include <QTest>

#include <functional>

using namespace sfx;

namespace {

using Forgery = std::function<void(forge::ArchivePlan &)>;

constexpr quint64 huge = quint64(1) << 63;
constexpr quint64 mostItems = (quint64(1) << 31) - 2; // more are not even read

// A header that unpacks to this many bytes, by its own word.
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

Q_DECLARE_METATYPE(Forgery)
Q_DECLARE_METATYPE(Refused)

/// Numbers in an archive's headers that contradict each other, the file, or reason.
class TestHostileHeader : public QObject
{
    Q_OBJECT

private slots:
    void takesAnHonestArchive();
    void unpacksNothingWithoutFiles();
    void refusesForgedNumbers_data();
    void refusesForgedNumbers();
    void refusesForgedStarts_data();
    void refusesForgedStarts();
    void boundsHeaders_data();
    void boundsHeaders();
    void boundsVeryManyNames();

private:
    static void addSizes();
    static void addCounts();
};

// Packed content, and a header that ends before it comes to files.
void TestHostileHeader::unpacksNothingWithoutFiles()
{
    forge::ArchivePlan plan({programFile()});
    plan.files.clear();
    plan.fileCount = 0;
    plan.hasNames = false;
    QByteArray header = forge::headerOf(plan);
    const QByteArray noFiles("\5\0\0", 3);
    QVERIFY(header.endsWith(noFiles + '\0'));
    header.remove(header.size() - 1 - noFiles.size(), noFiles.size());
    MemorySource source(forge::archiveOf(plan.packed, header));
    Archive archive(source);
    QCOMPARE(archive.open(0), Status::Ok);
    QCOMPARE(archive.entryCount(), 0u);
    for (unsigned threads : {1u, 2u}) {
        TreeSink sink;
        QCOMPARE(unpack(archive, sink, 0, {threads}), Status::Ok);
        QVERIFY(sink.tree.isEmpty());
    }
}

void TestHostileHeader::takesAnHonestArchive()
{
    const HostileRun run = runHostile(forge::archiveOf(planWith({{"a/b.txt", "text"}, {"c", ""}})));
    QCOMPARE(run.status, Status::Ok);
    QCOMPARE(run.files, QList<QString>({"a/b.txt", "c", "main.exe"}));
    QCOMPARE(runHostile(packedHeaders(1)).status, Status::Ok);
}

namespace {

void row(const char *name, Forgery forgery, Status status, Refused when = Refused::BeforeWriting)
{
    QTest::newRow(name) << std::move(forgery) << status << when;
}

} // namespace

void TestHostileHeader::addSizes()
{
    using Plan = forge::ArchivePlan;
    const auto late = Refused::WhileWriting;
    row(
        "a file of 4 EiB", [](Plan &p) { p.folders[0].unpackSizes = {huge / 2}; }, Status::Damaged,
        late);
    row(
        "a file of 8 EiB, negative to some", [](Plan &p) { p.folders[0].unpackSizes = {huge}; },
        Status::Damaged, late);
    row(
        "a file of all the bytes there can be",
        [](Plan &p) { p.folders[0].unpackSizes = {~quint64(0)}; }, Status::Damaged, late);
    row(
        "a file one byte longer than what is there", [](Plan &p) { ++p.folders[0].unpackSizes[0]; },
        Status::Damaged, late);
    row(
        "files whose sum is too large for a number",
        [](Plan &p) { p.streamSizes[0] = ~quint64(0); }, Status::Damaged);
    row(
        "a file longer than its folder", [](Plan &p) { p.streamSizes[0] += 100; }, Status::Damaged);
    row(
        "packed size of 8 EiB", [](Plan &p) { p.packSizes = {huge}; }, Status::Damaged);
    row(
        "packed size beyond the file", [](Plan &p) { ++p.packSizes[0]; }, Status::Damaged);
    row(
        "packed sizes whose sum is too large for a number",
        [](Plan &p) {
            p.packCount = 3;
            p.packSizes << huge << huge;
        },
        Status::Damaged);
    row(
        "packed data at 8 EiB", [](Plan &p) { p.packOffset = huge; }, Status::Damaged);
    row(
        "packed data one byte too far", [](Plan &p) { p.packOffset = 1; }, Status::Damaged);
    row(
        "packed data shorter than the file", [](Plan &p) { --p.packSizes[0]; }, Status::Damaged,
        late);
    row(
        "a wrong check sum", [](Plan &p) { p.checkSums[0] ^= 1; }, Status::Damaged, late);
    row(
        "a property longer than the header",
        [](Plan &p) { p.furtherProperties = QByteArray(1, 25) + forge::number(1 << 20); },
        Status::Damaged);
    row(
        "a property of 8 EiB",
        [](Plan &p) { p.furtherProperties = QByteArray(1, 25) + forge::number(huge); },
        Status::Damaged);
}

void TestHostileHeader::addCounts()
{
    using Plan = forge::ArchivePlan;
    row(
        "4 Gi files", [](Plan &p) { p.fileCount = quint64(1) << 32; }, Status::Unsupported);
    row(
        "2 Gi files without a name",
        [](Plan &p) {
            p.fileCount = mostItems;
            p.streamCounts = {mostItems};
            p.hasNames = false;
        },
        Status::Damaged);
    row(
        "2 Gi files and the names of two", [](Plan &p) { p.fileCount = mostItems; },
        Status::NoMemory);
    row(
        "a file without a name", [](Plan &p) { ++p.fileCount; }, Status::Damaged);
    row(
        "a name without a file", [](Plan &p) { --p.fileCount; }, Status::Damaged);
    row(
        "no names", [](Plan &p) { p.hasNames = false; }, Status::Damaged);
    row(
        "names twice",
        [](Plan &p) { p.furtherProperties = forge::property(17, QByteArray(5, '\0')); },
        Status::Damaged);
    row(
        "names in a stream that is not there",
        [](Plan &p) {
            p.hasNames = false;
            p.furtherProperties = forge::property(17, QByteArray("\x01\x07", 2));
        },
        Status::Damaged);
    row(
        "names without an end",
        [](Plan &p) {
            p.hasNames = false;
            p.furtherProperties = forge::property(17, QByteArray("\0a\0", 3));
        },
        Status::Damaged);
    row(
        "2 Gi folders", [](Plan &p) { p.folderCount = quint64(1) << 31; }, Status::Unsupported);
    row(
        "1 Gi folders", [](Plan &p) { p.folderCount = quint64(1) << 30; }, Status::NoMemory);
    row(
        "a folder that is not there", [](Plan &p) { p.folderCount = 2; }, Status::Unsupported);
    row(
        "2 Gi packed streams", [](Plan &p) { p.packCount = mostItems; }, Status::NoMemory);
    row(
        "no packed stream",
        [](Plan &p) {
            p.packCount = 0;
            p.packSizes.clear();
        },
        Status::Damaged);
    row(
        "more streams than files", [](Plan &p) { p.streamCounts = {3}; }, Status::Damaged);
    row(
        "fewer streams than files",
        [](Plan &p) {
            p.streamCounts = {1};
            p.streamSizes.clear();
            p.checkSums.removeLast();
        },
        Status::Damaged);
    row(
        "fewer check sums than files", [](Plan &p) { p.checkSums.removeLast(); }, Status::Damaged);
    row(
        "no file at all",
        [](Plan &p) {
            p.folderCount = p.fileCount = 0;
            p.files.clear();
        },
        Status::ProgramMissing);
    row(
        "no program", [](Plan &p) { p.files[0].name = "other.exe"; }, Status::ProgramMissing);
    row(
        "the program in a folder", [](Plan &p) { p.files[0].name = "a/main.exe"; },
        Status::ProgramMissing);
}

void TestHostileHeader::refusesForgedNumbers_data()
{
    QTest::addColumn<Forgery>("forgery");
    QTest::addColumn<Status>("status");
    QTest::addColumn<Refused>("when");
    addSizes();
    addCounts();
}

void TestHostileHeader::refusesForgedNumbers()
{
    QFETCH(Forgery, forgery);
    QFETCH(Refused, when);
    forge::ArchivePlan plan = planWith({{"lib/a.dll", "a library"}});
    forgery(plan);
    const HostileRun run = runHostile(forge::archiveOf(plan));
    QTEST(run.status, "status");
    QCOMPARE(run.hasBegun, when == Refused::WhileWriting);
    QVERIFY(run.written <= 1024);
    // Decoding has a buffer of 1 MiB; what is refused before has only the header's tables.
    const std::size_t most = when == Refused::WhileWriting ? 3u << 19 : 1u << 19;
    QVERIFY2(run.peakMemory < most, qPrintable(QString::number(run.peakMemory)));
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
    // The header once as it is; nothing for what it says.
    const std::size_t most = (isRead ? static_cast<std::size_t>(archive.size()) : 0) + (1u << 19);
    QVERIFY2(run.peakMemory < most, qPrintable(QString::number(run.peakMemory)));
}

// As many entries as the budget for tables allows, nearly. To compare their names takes memory of
// its own.
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
