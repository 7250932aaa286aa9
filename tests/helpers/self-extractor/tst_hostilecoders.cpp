// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/hostilerun.h"
#include "tests/helpers/self-extractor/zstdframes.h"

#include <QTest>
#include <QtEndian>

using namespace sfx;

Q_DECLARE_METATYPE(forge::Folder)
Q_DECLARE_METATYPE(Refused)

namespace {

const QByteArray lzma = QByteArray::fromHex("030101");
const QByteArray lzma2 = QByteArray::fromHex("21");
const QByteArray bcj2 = QByteArray::fromHex("0303011b");
const QByteArray zstd = QByteArray::fromHex("04f71101");
constexpr quint64 giB = quint64(1) << 30;

forge::Coder coder(const char *method, const QByteArray &properties = {}, quint64 inputs = 1)
{
    return {QByteArray::fromHex(method), properties, inputs};
}

// LZMA's five property bytes: the usual context bits, and the dictionary size.
QByteArray lzmaProperties(quint32 dictionary)
{
    QByteArray bytes(5, '\x5d');
    qToLittleEndian(dictionary, bytes.data() + 1);
    return bytes;
}

// A chain of coders, each with this unpacked size. The first coder's output is the file.
forge::Folder chain(const QList<forge::Coder> &coders, quint64 size = 16)
{
    forge::Folder folder{coders};
    for (qsizetype i = 0; i < coders.size(); ++i) {
        folder.unpackSizes << size;
        if (i > 0) {
            folder.bonds << std::pair(quint64(i - 1), quint64(i));
        }
    }
    return folder;
}

forge::Folder lzmaChain(int count, quint32 dictionary, quint64 size)
{
    return chain(QList<forge::Coder>(count, {lzma, lzmaProperties(dictionary)}), size);
}

forge::ArchivePlan planOf(const forge::Folder &folder, const QByteArray &packed = {})
{
    forge::ArchivePlan plan = planWith({});
    plan.folders = {folder};
    if (!packed.isEmpty()) {
        plan.packed = packed;
        plan.packSizes = {static_cast<quint64>(packed.size())};
    }
    return plan;
}

// The beginning of a frame with a window of 2^27 bytes, and a few eighths of that more.
QByteArray frameBegin(int eighths, std::optional<quint64> contentSize)
{
    return zstdframes::frameHeader(static_cast<quint8>((17 << 3) + eighths), contentSize);
}

} // namespace

// Methods that the module does not have, connections that make no sense, and dictionaries too large
// for any computer.
class TestHostileCoders : public QObject
{
    Q_OBJECT

private slots:
    void takesChains();
    void refusesFolders_data();
    void refusesFolders();
    void takesZstandard();
    void refusesZstandard_data();
    void refusesZstandard();
    void looksAtAllFoldersFirst();
    void boundsHeadersToo_data();
    void boundsHeadersToo();

private:
    static void addMethods();
    static void addWirings();
    static void addDictionaries();
};

void TestHostileCoders::takesChains()
{
    const forge::Coder copy;
    for (const int length : {1, 2, 3, 4}) {
        const HostileRun run
            = runHostile(forge::archiveOf(planOf(chain(QList<forge::Coder>(length, copy)))));
        QCOMPARE(run.status, Status::Ok);
        QCOMPARE(run.files, QList<QString>{"main.exe"});
    }
}

namespace {

void row(const char *name, const forge::Folder &folder, Status status,
         Refused when = Refused::BeforeWriting)
{
    QTest::newRow(name) << folder << status << when;
}

} // namespace

void TestHostileCoders::addMethods()
{
    row("PPMd", chain({coder("030401", QByteArray(5, 6))}), Status::Unsupported);
    row("BZip2", chain({coder("040202")}), Status::Unsupported);
    row("Deflate", chain({coder("040108")}), Status::Unsupported);
    row("AES", chain({coder("06f10701", QByteArray(2, 0x13))}), Status::Unsupported);
    row("AES over LZMA", chain({{lzma, lzmaProperties(1 << 16)}, coder("06f10701", "x")}),
        Status::Unsupported);
    row("a method that nobody has", chain({coder("7f123456")}), Status::Unsupported);
    row("a method of eight bytes", chain({coder("2100000000000000")}), Status::Unsupported);
    row("a method of fifteen bytes", chain({{QByteArray(15, 'x')}}), Status::Unsupported);
    row("LZMA without its properties", chain({{lzma}}), Status::Unsupported);
    row("LZMA with four bytes of properties", chain({{lzma, QByteArray(4, '\0')}}),
        Status::Unsupported);
    row("LZMA2 with two bytes of properties", chain({{lzma2, QByteArray(2, '\0')}}),
        Status::Unsupported);
    row("LZMA with context bits that there are not",
        chain({{lzma, QByteArray(1, '\xff') + lzmaProperties(1 << 16).mid(1)}}),
        Status::Unsupported, Refused::WhileWriting);
    row("ARM64 that begins between instructions", chain({coder("0a", QByteArray(4, 1))}),
        Status::Unsupported, Refused::WhileWriting);
    row("Delta without its distance", chain({coder("03")}), Status::Unsupported,
        Refused::WhileWriting);
    row("LZMA that is none", lzmaChain(1, 1 << 16, 16), Status::Damaged, Refused::WhileWriting);
}

void TestHostileCoders::addWirings()
{
    const forge::Coder copy;
    const QList<forge::Coder> three(3, copy);
    const QList<quint64> sizes(4, 16);
    row("coders in a circle", {three, {{0, 1}, {1, 0}}, {}, sizes.mid(0, 3)}, Status::Damaged);
    row("a larger circle", {QList<forge::Coder>(4, copy), {{0, 1}, {1, 2}, {2, 0}}, {}, sizes},
        Status::Damaged);
    row("a coder that feeds itself", {QList<forge::Coder>(2, copy), {{0, 0}}, {}, sizes.mid(0, 2)},
        Status::Damaged);
    row("an output used twice", {three, {{0, 2}, {1, 2}}, {}, sizes.mid(0, 3)}, Status::Damaged);
    row("an input fed twice", {three, {{0, 1}, {0, 2}}, {}, sizes.mid(0, 3)}, Status::Damaged);
    row("an input that is not there", {three, {{7, 1}, {1, 2}}, {}, sizes.mid(0, 3)},
        Status::Damaged);
    row("a coder that is not there", {three, {{0, 7}, {1, 2}}, {}, sizes.mid(0, 3)},
        Status::Damaged);
    row("five coders", chain(QList<forge::Coder>(5, copy)), Status::Unsupported);
    row("33 coders", chain(QList<forge::Coder>(33, copy)), Status::Unsupported);
    row("65 coders", chain(QList<forge::Coder>(65, copy)), Status::Unsupported);
    row("no coder", {{}, {}, {}, {}}, Status::Unsupported);
    row("a coder without an input", chain({coder("00", {}, 0)}), Status::Unsupported);
    row("a coder with two outputs", chain({{QByteArray(1, '\0'), {}, 1, 2}}), Status::Unsupported);
    row("a coder with 4 Gi inputs", chain({coder("00", {}, 4 * giB)}), Status::Unsupported);
    row("BCJ2 with one input", chain({{bcj2}}), Status::Unsupported);
    row("BCJ2 with more inputs than there are streams", {{{bcj2, {}, 4}}, {}, {0, 1, 2, 3}, {16}},
        Status::Damaged);
    row("Copy with four inputs", {{coder("00", {}, 4)}, {}, {0, 1, 2, 3}, {16}}, Status::Damaged);
}

void TestHostileCoders::addDictionaries()
{
    row("a dictionary of 4 GiB for a file of 5", lzmaChain(1, 0xffffffff, 5 * giB),
        Status::Unsupported);
    row("a dictionary of 4 GiB for a file of 8 EiB", lzmaChain(1, 0xffffffff, quint64(1) << 63),
        Status::Unsupported);
    row("a dictionary a byte larger than allowed", lzmaChain(1, (1536u << 20) + 1, 5 * giB),
        Status::Unsupported);
    row("LZMA2 with a dictionary of 4 GiB", chain({{lzma2, QByteArray(1, 40)}}, 5 * giB),
        Status::Unsupported);
    row("LZMA2 with a dictionary beyond all", chain({{lzma2, QByteArray(1, 41)}}, 5 * giB),
        Status::Unsupported);
    row("four dictionaries of 1 GiB", lzmaChain(4, 1u << 30, 5 * giB), Status::Unsupported);
    row("two dictionaries that are too large together", lzmaChain(2, 769u << 20, 5 * giB),
        Status::Unsupported);
    row("a dictionary of 4 GiB for a small file, which needs none", lzmaChain(1, 0xffffffff, 16),
        Status::Damaged, Refused::WhileWriting);
}

void TestHostileCoders::refusesFolders_data()
{
    QTest::addColumn<forge::Folder>("folder");
    QTest::addColumn<Status>("status");
    QTest::addColumn<Refused>("when");
    addMethods();
    addWirings();
    addDictionaries();
}

void TestHostileCoders::refusesFolders()
{
    QFETCH(forge::Folder, folder);
    QFETCH(Refused, when);
    const HostileRun run = runHostile(forge::archiveOf(planOf(folder)));
    QTEST(run.status, "status");
    QCOMPARE(run.hasBegun, when == Refused::WhileWriting);
    QVERIFY(run.written <= 16 && run.files.isEmpty());
    QVERIFY2(run.peakMemory < 2u << 20, qPrintable(QString::number(run.peakMemory)));
}

void TestHostileCoders::takesZstandard()
{
    const forge::Coder copy;
    const QByteArray frame = zstdframes::frameOf(programFile().content);
    for (int properties = 0; properties <= 5; ++properties) {
        const forge::Coder packer{zstd, QByteArray(properties, '\1')};
        for (const auto &coders : {QList{packer}, QList{copy, packer}, QList{packer, copy}}) {
            forge::Folder folder = chain(coders);
            if (coders.last().method == copy.method) {
                folder.unpackSizes.last() = static_cast<quint64>(frame.size());
            }
            QCOMPARE(runHostile(forge::archiveOf(planOf(folder, frame))).status, Status::Ok);
        }
    }
    // Zstandard in Zstandard.
    const QByteArray twice = zstdframes::frameOf(frame);
    forge::Folder folder = chain({{zstd}, {zstd}});
    folder.unpackSizes[1] = static_cast<quint64>(frame.size());
    QCOMPARE(runHostile(forge::archiveOf(planOf(folder, twice))).status, Status::Ok);
}

void TestHostileCoders::refusesZstandard_data()
{
    QTest::addColumn<forge::Folder>("folder");
    QTest::addColumn<QByteArray>("packed");
    QTest::addColumn<Status>("status");
    QTest::addColumn<Refused>("when");
    const auto row = [](const char *name, const forge::Folder &folder, const QByteArray &packed,
                        Status status, Refused when = Refused::WhileWriting) {
        QTest::newRow(name) << folder << packed << status << when;
    };
    const QByteArray frame = zstdframes::frameOf(programFile().content);
    const forge::Coder copy;
    row("six bytes of properties", chain({{zstd, QByteArray(6, '\1')}}), frame, Status::Unsupported,
        Refused::BeforeWriting);
    row("a window of 144 MiB", chain({{zstd}}, 5 * giB), frameBegin(1, 5 * giB),
        Status::Unsupported, Refused::BeforeWriting);
    row("a window of 144 MiB, content size not known", chain({{zstd}}, 5 * giB),
        frameBegin(1, std::nullopt), Status::Unsupported, Refused::BeforeWriting);
    row("the largest window, for a file of 8 EiB", chain({{zstd}}, quint64(1) << 63),
        zstdframes::frameHeader(quint8(0xff), std::nullopt), Status::Unsupported,
        Refused::BeforeWriting);
    row("a large content in one piece", chain({{zstd}}, 5 * giB),
        zstdframes::frameHeader({}, 5 * giB), Status::Unsupported, Refused::BeforeWriting);
    row("a window of 144 MiB after another coder", chain({{zstd}, copy}, 5 * giB),
        frameBegin(1, 5 * giB), Status::Unsupported);
    row("a window of 144 MiB after a skippable frame", chain({{zstd}}, 5 * giB),
        zstdframes::skippableFrame("x") + frameBegin(1, 5 * giB), Status::Unsupported);
    row("a window of 144 MiB for a small file, which needs none", chain({{zstd}}),
        frameBegin(1, std::nullopt), Status::Damaged);
    row("a dictionary", chain({{zstd}}), zstdframes::frameHeader(quint8(0), 16, 77) + frame,
        Status::Unsupported);
    row("zeros", chain({{zstd}}), QByteArray(16, '\0'), Status::Damaged);
    row("another method's data", chain({{zstd}}), QByteArray::fromHex("5d00000100"),
        Status::Damaged);
    row("two frames for one", chain({{zstd}}), frame + frame, Status::Damaged);
    row("a byte after the frame", chain({{zstd}}), frame + "x", Status::Damaged);
    row("a byte after the frame, before a filter", chain({{coder("03030103")}, {zstd}}),
        frame + "x", Status::Damaged);
}

// Memory for a window is allocated only if it is allowed and if that much is unpacked.
void TestHostileCoders::refusesZstandard()
{
    QFETCH(forge::Folder, folder);
    QFETCH(QByteArray, packed);
    QFETCH(Refused, when);
    const HostileRun run = runHostile(forge::archiveOf(planOf(folder, packed)));
    QTEST(run.status, "status");
    QCOMPARE(run.hasBegun, when == Refused::WhileWriting);
    QVERIFY(run.written <= 16);
    QVERIFY2(run.peakMemory < 2u << 20, qPrintable(QString::number(run.peakMemory)));
}

// If one folder cannot be unpacked, the one before it is not unpacked either.
void TestHostileCoders::looksAtAllFoldersFirst()
{
    forge::ArchivePlan plan = planWith({});
    plan.files << forge::File{"a.dll", "evil"};
    plan.packed += "evil";
    plan.packCount = plan.folderCount = plan.fileCount = 2;
    plan.packSizes << 4;
    plan.folders << forge::Folder{.unpackSizes = {4}};
    plan.streamCounts << 1;
    plan.checkSums << forge::checkSum("evil");
    QCOMPARE(runHostile(forge::archiveOf(plan)).status, Status::Ok);
    plan.folders[1].coders[0].method = QByteArray::fromHex("06f10701");
    const HostileRun run = runHostile(forge::archiveOf(plan));
    QCOMPARE(run.status, Status::Unsupported);
    QVERIFY(!run.hasBegun);
}

void TestHostileCoders::boundsHeadersToo_data()
{
    QTest::addColumn<forge::Folder>("folder");
    QTest::addColumn<Status>("status");
    const auto small = [](forge::Folder folder) {
        folder.unpackSizes[0] = 16;
        return folder;
    };
    QTest::newRow("four dictionaries of 1 GiB")
        << small(lzmaChain(4, 1u << 30, 5 * giB)) << Status::Unsupported;
    QTest::newRow("a dictionary of 300 MiB behind a small one")
        << small(lzmaChain(2, 300u << 20, 5 * giB)) << Status::Unsupported;
    QTest::newRow("three windows of 128 MiB")
        << small(chain(QList<forge::Coder>(3, {zstd}), 5 * giB)) << Status::Unsupported;
    QTest::newRow("AES") << chain({coder("06f10701", "x")}) << Status::Unsupported;
    QTest::newRow("coders in a circle")
        << forge::Folder{QList<forge::Coder>(3), {{0, 1}, {1, 0}}, {}, {16, 16, 16}}
        << Status::Damaged;
}

// The packed header has the same limits as the files.
void TestHostileCoders::boundsHeadersToo()
{
    QFETCH(forge::Folder, folder);
    const QByteArray packed(16, 'x');
    const HostileRun run = runHostile(
        forge::archiveOf(packed, forge::encodedHeader(folder, 0, 16, forge::checkSum(packed))));
    QTEST(run.status, "status");
    QVERIFY(!run.hasBegun);
    QVERIFY2(run.peakMemory < 1u << 20, qPrintable(QString::number(run.peakMemory)));
}

QTEST_APPLESS_MAIN(TestHostileCoders)
#include "tst_hostilecoders.moc"
