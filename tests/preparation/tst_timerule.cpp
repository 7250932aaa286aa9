// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/timerule.h"

#include <QTest>

class TestTimeRule : public QObject
{
    Q_OBJECT

private slots:
    void readsTimes_data();
    void readsTimes();
    void clampsOrFixes();
};

void TestTimeRule::readsTimes_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("variable");
    QTest::addColumn<bool>("reproducible");
    QTest::addColumn<qint64>("seconds"); // -1: no limit; -2: refused
    const auto row = [](const char *name, const char *option, const char *variable,
                        bool reproducible, qint64 seconds) {
        QTest::newRow(name) << QString(option) << QString(variable) << reproducible << seconds;
    };
    row("nothing", "", "", false, -1);
    row("reproducible without a time", "", "", true, 946684800);
    row("seconds", "1700000000", "", false, 1700000000);
    row("zero", "0", "", false, 0);
    row("the variable", "", "1700000000", false, 1700000000);
    row("the option comes first", "5", "6", false, 5);
    row("reproducible with the variable", "", "1700000000", true, 1700000000);
    row("a date", "2026-11-22", "", false, 1795305600);
    row("a date and a time, which is UTC", "2026-11-22T01:02:03", "", false, 1795309323);
    row("with a blank", "2026-11-22 01:02:03", "", false, 1795309323);
    row("with Z", "2026-11-22T01:02:03Z", "", false, 1795309323);
    row("without seconds", "2026-11-22T01:02Z", "", false, 1795309320);
    row("another zone", "2026-11-22T03:02:03+02:00", "", false, 1795309323);
    row("the end", "253402300799", "", false, 253402300799);
    row("after the end", "253402300800", "", false, -2);
    row("far after the end", "99999999999999999999", "", false, -2);
    row("negative", "-1", "", false, -2);
    row("before 1970", "1969-12-31T23:59:59Z", "", false, -2);
    row("no date", "2026-02-30", "", false, -2);
    row("no time", "2026-01-01T25:00:00Z", "", false, -2);
    row("a word", "now", "", false, -2);
    row("a word after a number", "17s", "", false, -2);
    row("a fraction", "1.5", "", false, -2);
    row("a word in the variable", "", "now", false, -2);
    row("a date in the variable", "", "2026-11-22", false, -2);
}

void TestTimeRule::readsTimes()
{
    QFETCH(const QString, option);
    QFETCH(const QString, variable);
    QFETCH(const bool, reproducible);
    QFETCH(const qint64, seconds);
    const auto result = timeRuleOf(option, variable, reproducible);
    if (const auto *refusal = std::get_if<Message>(&result)) {
        QCOMPARE(seconds, -2);
        const QString text = textOf(*refusal);
        QVERIFY2(text.contains(option.isEmpty() ? variable : option), qUtf8Printable(text));
        return;
    }
    const TimeRule rule = std::get<TimeRule>(result);
    QCOMPARE(rule.isFixed, reproducible);
    QCOMPARE(rule.limit ? *rule.limit / 10000000 : -1, seconds);
}

void TestTimeRule::clampsOrFixes()
{
    QCOMPARE(TimeRule().applyTo(7), 7);
    const TimeRule clamp{100, false};
    QCOMPARE(clamp.applyTo(99), 99);
    QCOMPARE(clamp.applyTo(101), 100);
    const TimeRule fixed{100, true};
    QCOMPARE(fixed.applyTo(99), 100);
    QCOMPARE(fixed.applyTo(101), 100);
}

QTEST_GUILESS_MAIN(TestTimeRule)
#include "tst_timerule.moc"
