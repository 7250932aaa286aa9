// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/largefile.h"
#include "tests/helpers/self-extractor/moduletest.h"
#include "tests/helpers/self-extractor/smalldisk.h"

#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

// In milliseconds; Wine takes its time for so many files, on a busy machine all the more.
constexpr int patience = 400000;

} // namespace

/// Applications of many files, and with files that are longer than 32 bits can say.
class TestLargePayload : public ModuleTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void unpacksFiftyThousandFiles();
    void unpacksAFileAboveFourGibibytes();

private:
    bool m_canMount = false;
};

void TestLargePayload::initTestCase()
{
    QVERIFY(m_run.setUp());
    // A server that is running already would not see what is mounted below.
    QVERIFY(m_run.waitForServersEnd());
    m_canMount = keepMountsToOurselves();
}

void TestLargePayload::cleanupTestCase()
{
    QVERIFY(m_run.waitForServersEnd());
}

void TestLargePayload::unpacksFiftyThousandFiles()
{
    constexpr int folders = 50;
    constexpr int filesEach = 1000;
    Tree tree{{u"main.exe"_s, ModuleRun::programBytes()}};
    for (int i = 0; i < folders * filesEach; ++i) {
        tree[u"%1/%2"_s.arg(i / filesEach).arg(i)] = QByteArray::number(i);
    }
    const QString file = m_run.assemble(tree, u"main.exe"_s);
    QVERIFY(!file.isEmpty());
    // In memory, where that can be had: a real disk is busy for long with so many small files.
    std::optional<SmallDisk> disk;
    if (m_canMount) {
        disk.emplace(m_run.temporaryFolder(), "size=1g");
        QVERIFY(disk->isMounted());
    }
    QString folder;
    const auto process = startWaiting(file, folder, patience);
    QVERIFY(process != nullptr);
    for (int i = 0; i < folders; ++i) {
        QCOMPARE(QDir(u"%1/%2"_s.arg(folder).arg(i)).entryList(QDir::Files).size(), filesEach);
    }
    for (int i = 0; i < folders * filesEach; i += 101) {
        QCOMPARE(contentOf(u"%1/%2/%3"_s.arg(folder).arg(i / filesEach).arg(i)),
                 QByteArray::number(i));
    }
    QCOMPARE(ModuleRun::finish(*process, patience).exitCode, 7);
    QCOMPARE(m_run.leftovers(), QStringList());
}

void TestLargePayload::unpacksAFileAboveFourGibibytes()
{
    constexpr qint64 needed = qint64(5) << 30;
    const qint64 available = QStorageInfo(m_run.temporaryFolder()).bytesAvailable();
    QVERIFY2(available >= needed,
             qPrintable(u"%1 has %2 bytes free, the test needs %3"_s.arg(m_run.temporaryFolder())
                            .arg(available)
                            .arg(needed)));
    LargeFile large;
    large.appendSample(noise(60001, 1));
    large.appendZeros(1023);
    large.appendSample(noise(65536, 2)); // below 2 GiB
    large.appendZeros(1026);
    large.appendSample(noise(50000, 3)); // above 4 GiB
    QVERIFY(large.size() > quint64(1) << 32);
    const QString file
        = m_run.assemble(large.archiveWith(ModuleRun::programBytes(), u"main.exe"_s, u"large"_s),
                         u"main.exe"_s);
    QVERIFY(!file.isEmpty());
    QVERIFY(QFileInfo(file).size() < 20 << 20);
    QString folder;
    const auto process = startWaiting(file, folder, patience);
    QVERIFY(process != nullptr);
    QFile unpacked(folder + u"/large"_s);
    QVERIFY(unpacked.open(QIODevice::ReadOnly));
    QCOMPARE(static_cast<quint64>(unpacked.size()), large.size());
    for (auto sample = large.samples().cbegin(); sample != large.samples().cend(); ++sample) {
        QVERIFY(unpacked.seek(static_cast<qint64>(sample.key())));
        QCOMPARE(unpacked.read(sample.value().size()), sample.value());
    }
    QVERIFY(unpacked.seek((qint64(1) << 32) - 1000));
    QCOMPARE(unpacked.read(2000), QByteArray(2000, '\0'));
    unpacked.close();
    QCOMPARE(ModuleRun::finish(*process, patience).exitCode, 7);
}

QTEST_GUILESS_MAIN(TestLargePayload)
#include "tst_largepayload.moc"
