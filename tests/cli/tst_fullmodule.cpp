// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/fullmodule.h"

#include "cli/language.h"

#include <QFile>
#include <QTest>

// Like kestrelpack-cli of a builder who brings a module for the bundle and no full one: this program carries
// only the bundle. tst_realjobs tests the other kind.
class TestFullModule : public QObject
{
    Q_OBJECT

private slots:
    void isRefusedIfItIsMissing_data();
    void isRefusedIfItIsMissing();
};

void TestFullModule::isRefusedIfItIsMissing_data()
{
    QTest::addColumn<Profile>("profile");
    QTest::addColumn<int>("days");
    QTest::addColumn<bool>("isRefused");
    QTest::newRow("default") << Profile::Default << 0 << false;
    QTest::newRow("small") << Profile::Small << 0 << false;
    QTest::newRow("fast start") << Profile::FastStart << 0 << true;
    QTest::newRow("kept") << Profile::Default << 1 << true;
    QTest::newRow("small and kept") << Profile::Small << 30 << true;
}

void TestFullModule::isRefusedIfItIsMissing()
{
    setLanguage(Language::English);
    QFETCH(bool, isRefused);
    PackOptions options;
    QFETCH(Profile, profile);
    options.profile = profile;
    QFETCH(int, days);
    options.keepDays = days;
    const auto module = moduleFor(options);
    if (const auto *refusal = std::get_if<Refusal>(&module)) {
        QVERIFY2(isRefused, qPrintable(refusal->message));
        QCOMPARE(refusal->message,
                 QString("this build of kestrelpack-cli has no self-extractor module for --profile "
                         "fast-start and --keep"));
    } else {
        QVERIFY(!isRefused);
        QCOMPARE(std::get<QString>(module), QString(":/resources/7zS2.sfx"));
        QVERIFY(QFile::exists(std::get<QString>(module)));
    }
}

QTEST_GUILESS_MAIN(TestFullModule)
#include "tst_fullmodule.moc"
