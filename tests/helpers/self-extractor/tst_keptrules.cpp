// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/keptrules.h"
#include "helpers/self-extractor/start/processrights.h"

#include "7zCrc.h"

#include <QTest>

#include <cstring>

using namespace sfx;

namespace {

constexpr std::uint64_t day = 864000000000;
constexpr std::uint64_t now = 134000000000000000; // some time in 2025

KeptRecord recordOf(char product, std::uint64_t newest)
{
    KeptRecord record;
    record.days = 30;
    record.newest = newest;
    std::memset(record.product, product, sizeof record.product);
    return record;
}

} // namespace

// The decisions about kept folders.
class TestKeptRules : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { CrcGenerateTable(); }
    void servesOrdinaryUsersOnly_data();
    void servesOrdinaryUsersOnly();
    void usesShortPaths_data();
    void usesShortPaths();
    void comparesContentsOfAnEarlierRun_data();
    void comparesContentsOfAnEarlierRun();
    void goesOnPrivately_data();
    void goesOnPrivately();
    void decidesWhatGoes_data();
    void decidesWhatGoes();
    void knowsOlderVersions_data();
    void knowsOlderVersions();
    void sealsARecord();
    void refusesADamagedRecord();
    void refusesARecordWithoutSense_data();
    void refusesARecordWithoutSense();
    void knowsItsPaths();
};

void TestKeptRules::servesOrdinaryUsersOnly_data()
{
    QTest::addColumn<bool>("isElevated");
    QTest::addColumn<bool>("isService");
    QTest::addColumn<unsigned>("integrity");
    QTest::addColumn<bool>("serves");
    QTest::newRow("an ordinary program") << false << false << 0x2000u << true;
    QTest::newRow("a program with uiAccess") << false << false << 0x2010u << true;
    QTest::newRow("a program with little trust") << false << false << 0x1000u << true;
    QTest::newRow("a program in a sandbox") << false << false << 0u << true;
    QTest::newRow("high integrity alone, as Wine reports it") << false << false << 0x3000u << true;
    QTest::newRow("an administrator") << true << false << 0x3000u << false;
    QTest::newRow("an administrator without a label") << true << false << 0u << false;
    QTest::newRow("the system") << true << false << 0x4000u << false;
    QTest::newRow("a service with few rights") << false << false << 0x4000u << false;
    QTest::newRow("a service as an ordinary user") << false << true << 0x2000u << false;
}

void TestKeptRules::servesOrdinaryUsersOnly()
{
    QFETCH(bool, isElevated);
    QFETCH(bool, isService);
    QFETCH(unsigned, integrity);
    QTEST(hasUsersRightsOnly({isElevated, isService, integrity}), "serves");
    QVERIFY(!hasUsersRightsOnly(ProcessRights())); // nothing is known
}

void TestKeptRules::usesShortPaths_data()
{
    QTest::addColumn<unsigned>("kept");
    QTest::addColumn<unsigned>("ofPrivate");
    QTest::addColumn<unsigned>("longest");
    QTest::addColumn<bool>("fits");
    QTest::newRow("short") << 120u << 60u << 20u << true;
    QTest::newRow("just as long as possible") << 120u << 60u << 138u << true;
    QTest::newRow("too long in the kept folder only") << 120u << 60u << 139u << false;
    QTest::newRow("just not too long in the private one") << 120u << 60u << 198u << false;
    QTest::newRow("too long in both") << 120u << 60u << 199u << true;
    QTest::newRow("a deep profile") << 300u << 280u << 8u << true;
}

void TestKeptRules::usesShortPaths()
{
    QFETCH(unsigned, kept);
    QFETCH(unsigned, ofPrivate);
    QFETCH(unsigned, longest);
    QTEST(fitsAsWell(kept, ofPrivate, longest), "fits");
}

void TestKeptRules::comparesContentsOfAnEarlierRun_data()
{
    QTest::addColumn<quint64>("written");
    QTest::addColumn<quint64>("started");
    QTest::addColumn<bool>("compares");
    QTest::newRow("written since the system was started") << quint64(5) << quint64(5) << false;
    QTest::newRow("written before") << quint64(4) << quint64(5) << true;
    QTest::newRow("written before the clock was set back") << quint64(6) << quint64(5) << true;
    QTest::newRow("read from the disk since") << quint64(0) << quint64(5) << false;
}

void TestKeptRules::comparesContentsOfAnEarlierRun()
{
    QFETCH(quint64, written);
    QFETCH(quint64, started);
    KeptRecord record;
    record.written = written;
    QTEST(mustCompareContents(record, started), "compares");
}

void TestKeptRules::goesOnPrivately_data()
{
    QTest::addColumn<Status>("status");
    QTest::addColumn<bool>("goesOn");
    QTest::newRow("nothing can be written") << Status::WriteFailed << true;
    QTest::newRow("the disk is full") << Status::DiskFull << true;
    QTest::newRow("too little memory for the comparison") << Status::NoMemory << true;
    QTest::newRow("the file is damaged") << Status::Damaged << false;
    QTest::newRow("the file cannot be read") << Status::ReadFailed << false;
    QTest::newRow("a method is missing") << Status::Unsupported << false;
    QTest::newRow("a name is not allowed") << Status::UnsafeName << false;
    QTest::newRow("the user cancelled") << Status::Cancelled << false;
    QTest::newRow("Ctrl+C") << Status::Interrupted << false;
}

void TestKeptRules::goesOnPrivately()
{
    QFETCH(Status, status);
    QTEST(canGoOnPrivately(status), "goesOn");
}

void TestKeptRules::decidesWhatGoes_data()
{
    QTest::addColumn<quint64>("lastUse");
    QTest::addColumn<KeptFate>("fate");
    QTest::newRow("used just now") << quint64(now) << KeptFate::Stay;
    QTest::newRow("used on the last day") << quint64(now - 30 * day) << KeptFate::Stay;
    QTest::newRow("not used any more") << quint64(now - 30 * day - 1) << KeptFate::Go;
    QTest::newRow("not used since 1601") << quint64(0) << KeptFate::Go;
    QTest::newRow("used in the future") << quint64(now + 1) << KeptFate::StayFromNow;
    QTest::newRow("used in the far future") << quint64(UINT64_MAX) << KeptFate::StayFromNow;
}

void TestKeptRules::decidesWhatGoes()
{
    QFETCH(quint64, lastUse);
    QTEST(fateOf(recordOf('a', 1), lastUse, now), "fate");
    KeptRecord longest = recordOf('a', 1);
    longest.days = maxKeepDays;
    QCOMPARE(fateOf(longest, now - 3650 * day, now), KeptFate::Stay);
    QCOMPARE(fateOf(longest, now - 3651 * day, now), KeptFate::Go);
}

void TestKeptRules::knowsOlderVersions_data()
{
    QTest::addColumn<char>("mine");
    QTest::addColumn<char>("other");
    QTest::addColumn<quint64>("newestOfOther");
    QTest::addColumn<bool>("isOlder");
    QTest::newRow("the version before") << 'a' << 'a' << quint64(9) << true;
    QTest::newRow("the next version") << 'a' << 'a' << quint64(11) << false;
    QTest::newRow("a version of the same time") << 'a' << 'a' << quint64(10) << false;
    QTest::newRow("another product") << 'a' << 'b' << quint64(9) << false;
    QTest::newRow("products that are not known") << '\0' << '\0' << quint64(9) << false;
}

void TestKeptRules::knowsOlderVersions()
{
    QFETCH(char, mine);
    QFETCH(char, other);
    QFETCH(quint64, newestOfOther);
    QTEST(isOlderVersion(recordOf(mine, 10), recordOf(other, newestOfOther)), "isOlder");
}

void TestKeptRules::sealsARecord()
{
    KeptRecord record = recordOf('p', 0x123456789abcdef0);
    record.written = 0xfedcba9876543210;
    record.days = 3650;
    record.paths = 77;
    record.pathsCrc = 0x89abcdef;
    sealRecord(record);
    QVERIFY(isRecord(record));
    std::uint8_t bytes[sizeof record];
    std::memcpy(bytes, &record, sizeof record);
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(bytes), 40).toHex(),
             QByteArray("4b506b01")
                 + QByteArray(reinterpret_cast<const char *>(bytes) + 4, 4).toHex()
                 + "1032547698badcfe" + "f0debc9a78563412" + "420e0000" + "4d000000" + "efcdab89"
                 + "00000000");
    QCOMPARE(bytes[40], std::uint8_t('p'));
}

// A record that never reached the disk may be all zeros, or end in zeros.
void TestKeptRules::refusesADamagedRecord()
{
    KeptRecord good = recordOf('p', 5);
    sealRecord(good);
    for (std::size_t i = 0; i < sizeof good; ++i) {
        std::uint8_t bytes[sizeof good];
        std::memcpy(bytes, &good, sizeof bytes);
        bytes[i] ^= 1;
        KeptRecord read;
        std::memcpy(&read, bytes, sizeof bytes);
        QVERIFY2(!isRecord(read), qPrintable(QString::number(i)));
    }
    QVERIFY(!isRecord(KeptRecord()));
}

void TestKeptRules::refusesARecordWithoutSense_data()
{
    QTest::addColumn<unsigned>("days");
    QTest::addColumn<unsigned>("paths");
    QTest::newRow("no days") << 0u << 1u;
    QTest::newRow("too many days") << 3651u << 1u;
    QTest::newRow("too many paths") << 30u << maxKeptPaths + 1;
}

void TestKeptRules::refusesARecordWithoutSense()
{
    QFETCH(unsigned, days);
    QFETCH(unsigned, paths);
    KeptRecord record = recordOf('p', 5);
    record.days = days;
    record.paths = paths;
    sealRecord(record);
    QVERIFY(!isRecord(record));
}

void TestKeptRules::knowsItsPaths()
{
    Array<std::uint64_t> hashes;
    QVERIFY(hashes.allocate(3));
    for (std::size_t i = 0; i < 3; ++i) {
        hashes[i] = 100 + i;
    }
    KeptRecord record;
    describePaths(hashes, record);
    QCOMPARE(record.paths, 3u);
    QVERIFY(hasPaths(record, hashes));
    hashes[1] = 0;
    QVERIFY(!hasPaths(record, hashes));
    hashes[1] = 101;
    hashes.shrink(2);
    QVERIFY(!hasPaths(record, hashes));
}

QTEST_APPLESS_MAIN(TestKeptRules)
#include "tst_keptrules.moc"
