// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/largefile.h"
#include "tests/helpers/self-extractor/moduletest.h"
#include "tests/helpers/self-extractor/smalldisk.h"
#include "tests/support/waiting.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

// Keeps the samples of one file, counts its bytes, and discards everything else.
class SampleSink final : public sfx::UnpackSink
{
public:
    SampleSink(const QString &name, const QMap<quint64, QByteArray> &expected)
        : m_name(name)
        , m_expected(expected)
    {
    }

    QMap<quint64, QByteArray> samples;
    quint64 size = 0;

    sfx::Status begin(std::uint64_t, std::uint32_t) override { return sfx::Status::Ok; }
    sfx::Status makeFolder(const sfx::Entry &) override { return sfx::Status::Ok; }
    sfx::Status beginFile(const sfx::Entry &file) override
    {
        m_isTheFile = QStringView(file.path, static_cast<qsizetype>(file.pathSize))
            == QStringView(m_name);
        return sfx::Status::Ok;
    }
    sfx::Status write(const std::uint8_t *data, std::size_t count) override
    {
        if (!m_isTheFile) {
            return sfx::Status::Ok;
        }
        for (auto sample = m_expected.cbegin(); sample != m_expected.cend(); ++sample) {
            const quint64 begin = std::max(sample.key(), size);
            const quint64 end
                = std::min(sample.key() + static_cast<quint64>(sample->size()), size + count);
            if (begin < end) {
                samples[sample.key()].append(reinterpret_cast<const char *>(data + (begin - size)),
                                             static_cast<qsizetype>(end - begin));
            }
        }
        size += count;
        return sfx::Status::Ok;
    }
    sfx::Status endFile(const sfx::Entry &) override { return sfx::Status::Ok; }
    sfx::Status finishFolder(const sfx::Entry &) override { return sfx::Status::Ok; }

private:
    const QString m_name;
    const QMap<quint64, QByteArray> m_expected;
    bool m_isTheFile = false;
};

LargeFile fileAboveFourGibibytes()
{
    LargeFile large;
    large.appendSample(noise(60001, 1));
    large.appendZeros(1023);
    large.appendSample(noise(65536, 2)); // below 2 GiB
    large.appendZeros(1026);
    large.appendSample(noise(50000, 3)); // above 4 GiB
    return large;
}

} // namespace

// Applications with many files, and with files whose sizes do not fit in 32 bits.
class TestLargePayload : public ModuleTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void unpacksThousandsOfFiles();
    void decodesAFileAboveFourGibibytes();
    void asksForMoreThanFourGibibytes();

private:
    bool m_canMount = false;
};

void TestLargePayload::initTestCase()
{
    QVERIFY(m_run.setUp());
    // A running Wine server would not see the disk that is mounted below.
    QVERIFY(m_run.waitForServersEnd());
    m_canMount = keepMountsToOurselves();
}

void TestLargePayload::cleanupTestCase()
{
    QVERIFY(m_run.waitForServersEnd());
}

void TestLargePayload::unpacksThousandsOfFiles()
{
    constexpr int folders = 10;
    constexpr int filesEach = 500;
    Tree tree{{u"main.exe"_s, ModuleRun::programBytes()}};
    for (int i = 0; i < folders * filesEach; ++i) {
        tree[u"%1/%2"_s.arg(i / filesEach).arg(i)] = QByteArray::number(i);
    }
    const QString file = m_run.assemble(tree, u"main.exe"_s);
    QVERIFY(!file.isEmpty());
    // In memory if possible: a real disk needs a long time for so many small files.
    std::optional<SmallDisk> disk;
    if (m_canMount) {
        disk.emplace(m_run.temporaryFolder(), "size=256m");
        QVERIFY(disk->isMounted());
    }
    QString folder;
    const auto process = startWaiting(file, folder);
    QVERIFY(process != nullptr);
    for (int i = 0; i < folders; ++i) {
        QCOMPARE(QDir(u"%1/%2"_s.arg(folder).arg(i)).entryList(QDir::Files).size(), filesEach);
    }
    for (int i = 0; i < folders * filesEach; i += 101) {
        QCOMPARE(contentOf(u"%1/%2/%3"_s.arg(folder).arg(i / filesEach).arg(i)),
                 QByteArray::number(i));
    }
    QCOMPARE(ModuleRun::finish(*process).exitCode, 7);
    QCOMPARE(m_run.leftovers(), QStringList());
}

// Runs natively, with a sink that keeps little, so that the disk is not written.
void TestLargePayload::decodesAFileAboveFourGibibytes()
{
    const LargeFile large = fileAboveFourGibibytes();
    QVERIFY(large.size() > quint64(1) << 32);
    MemorySource source(large.archiveWith(ModuleRun::programBytes(), u"main.exe"_s, u"large"_s));
    sfx::Archive archive(source);
    QCOMPARE(archive.open(0), sfx::Status::Ok);
    SampleSink sink(u"large"_s, large.samples());
    const quint64 all = large.size() + static_cast<quint64>(ModuleRun::programBytes().size());
    QCOMPARE(sfx::unpack(archive, sink, all), sfx::Status::Ok);
    QCOMPARE(sink.size, large.size());
    QCOMPARE(sink.samples, large.samples());
}

// The module itself can count that far.
void TestLargePayload::asksForMoreThanFourGibibytes()
{
    if (!m_canMount) {
        QSKIP("only root can mount a small disk");
    }
    const QString file
        = m_run.assemble(fileAboveFourGibibytes().archiveWith(ModuleRun::programBytes(),
                                                              u"main.exe"_s, u"large"_s),
                         u"main.exe"_s);
    QVERIFY(!file.isEmpty());
    const SmallDisk disk(m_run.temporaryFolder(), "size=16m");
    QVERIFY(disk.isMounted());
    const Run result = m_run.run(file);
    QCOMPARE(result.value("ended").toUInt(), static_cast<quint32>(sfx::ExitCode::DiskFull));
    QVERIFY2(result.errors.contains("At least 4.0 GB more is needed."), result.errors.constData());
    QCOMPARE(m_run.leftovers(), QStringList());
}

QTEST_GUILESS_MAIN(TestLargePayload)
#include "tst_largepayload.moc"
