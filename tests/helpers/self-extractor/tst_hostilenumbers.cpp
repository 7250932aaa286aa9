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
constexpr quint64 mostItems = (quint64(1) << 31) - 2; // the module does not read more than this

void row(const char *name, const Forgery &forgery, Status status,
         Refused when = Refused::BeforeWriting)
{
    QTest::newRow(name) << forgery << status << when;
}

} // namespace

Q_DECLARE_METATYPE(Forgery)
Q_DECLARE_METATYPE(Refused)

// Numbers in an archive's header that are absurd or contradict each other or the file.
class TestHostileNumbers : public QObject
{
    Q_OBJECT

private slots:
    void takesHonestNumbers();
    void unpacksNothingWithoutFiles();
    void refusesForgedNumbers_data();
    void refusesForgedNumbers();

private:
    static void addSizes();
    static void addCounts();
};

void TestHostileNumbers::takesHonestNumbers()
{
    const HostileRun run = runHostile(forge::archiveOf(planWith({{"a/b.txt", "text"}, {"c", ""}})));
    QCOMPARE(run.status, Status::Ok);
    QCOMPARE(run.files, QList<QString>({"a/b.txt", "c", "main.exe"}));
}

// Packed content, with a header that ends before its list of files.
void TestHostileNumbers::unpacksNothingWithoutFiles()
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

void TestHostileNumbers::addSizes()
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

void TestHostileNumbers::addCounts()
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

void TestHostileNumbers::refusesForgedNumbers_data()
{
    QTest::addColumn<Forgery>("forgery");
    QTest::addColumn<Status>("status");
    QTest::addColumn<Refused>("when");
    addSizes();
    addCounts();
}

void TestHostileNumbers::refusesForgedNumbers()
{
    QFETCH(Forgery, forgery);
    QFETCH(Refused, when);
    forge::ArchivePlan plan = planWith({{"lib/a.dll", "a library"}});
    forgery(plan);
    const HostileRun run = runHostile(forge::archiveOf(plan));
    QTEST(run.status, "status");
    QCOMPARE(run.hasBegun, when == Refused::WhileWriting);
    QVERIFY(run.written <= 1024);
    // Decoding has a buffer of 1 MiB. If the archive is refused earlier, only the header's tables
    // use memory.
    const std::size_t most = when == Refused::WhileWriting ? 3u << 19 : 1u << 19;
    QVERIFY2(run.peakMemory < most, qPrintable(QString::number(run.peakMemory)));
}

QTEST_APPLESS_MAIN(TestHostileNumbers)
#include "tst_hostilenumbers.moc"
