// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/heldfile.h"
#include "helpers/self-extractor/start/nextstart.h"

#include <QTest>

#include <algorithm>
#include <iterator>
#include <numeric>

using sfx::ExitCode;
using sfx::NextStart;

// What the module does after Windows has refused to start the program.
class TestNextStart : public QObject
{
    Q_OBJECT

private slots:
    void choosesAnotherWay_data();
    void choosesAnotherWay();
    void waitsForScannersOnly_data();
    void waitsForScannersOnly();
    void waitsForTwoAndAHalfSeconds();
};

void TestNextStart::choosesAnotherWay_data()
{
    QTest::addColumn<unsigned>("error");
    QTest::addColumn<bool>("isElevated");
    QTest::addColumn<NextStart>("next");
    QTest::addColumn<ExitCode>("code");
    QTest::newRow("the program asks for more rights")
        << 740u << false << NextStart::ProducedFile << ExitCode::StartFailed;
    QTest::newRow("more rights than an administrator's")
        << 740u << true << NextStart::ThroughShell << ExitCode::StartFailed;
    QTest::newRow("the user does not allow it")
        << 1223u << false << NextStart::None << ExitCode::Cancelled;
    QTest::newRow("the user does not allow it to an administrator")
        << 1223u << true << NextStart::None << ExitCode::Cancelled;
    QTest::newRow("no program") << 193u << false << NextStart::None << ExitCode::StartFailed;
    QTest::newRow("access denied") << 5u << false << NextStart::None << ExitCode::StartFailed;
    QTest::newRow("access denied to an administrator")
        << 5u << true << NextStart::None << ExitCode::StartFailed;
    QTest::newRow("forbidden by the administrator of the machine")
        << 1260u << false << NextStart::None << ExitCode::StartFailed;
}

void TestNextStart::choosesAnotherWay()
{
    QFETCH(unsigned, error);
    QFETCH(bool, isElevated);
    QTEST(sfx::nextStart(error, isElevated), "next");
    QTEST(sfx::exitCodeOfStart(error), "code");
}

void TestNextStart::waitsForScannersOnly_data()
{
    QTest::addColumn<unsigned>("error");
    QTest::addColumn<bool>("isHeld");
    QTest::newRow("a sharing violation") << 32u << true;
    QTest::newRow("a lock violation") << 33u << true;
    QTest::newRow("access denied") << 5u << false;
    QTest::newRow("no program") << 193u << false;
    QTest::newRow("found to be a virus") << 225u << false;
    QTest::newRow("more rights") << 740u << false;
}

void TestNextStart::waitsForScannersOnly()
{
    QFETCH(unsigned, error);
    QTEST(sfx::isHeldByAnother(error), "isHeld");
}

void TestNextStart::waitsForTwoAndAHalfSeconds()
{
    const auto begin = std::begin(sfx::holderPauses);
    const auto end = std::end(sfx::holderPauses);
    QCOMPARE(std::accumulate(begin, end, 0u), 2500u);
    QVERIFY(std::is_sorted(begin, end));
    QVERIFY(*begin <= 10); // most scanners need only a moment
}

QTEST_APPLESS_MAIN(TestNextStart)
#include "tst_nextstart.moc"
