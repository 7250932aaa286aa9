// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/notice.h"

#include <QTest>

using namespace sfx;

// How a failure is told.
class TestNotice : public QObject
{
    Q_OBJECT

private slots:
    void choosesTheWay_data();
    void choosesTheWay();
};

void TestNotice::choosesTheWay_data()
{
    QTest::addColumn<ExitCode>("failure");
    QTest::addColumn<NoticeFacts>("facts");
    QTest::addColumn<Notice>("notice");
    const auto row
        = [](const char *name, ExitCode failure, const NoticeFacts &facts, Notice notice) {
              QTest::newRow(name) << failure << facts << notice;
          };
    const auto damaged = ExitCode::Damaged;
    row("after a double-click", damaged, {}, Notice::Box);
    row("with standard error", damaged, {.hasStandardError = true}, Notice::Line);
    row("silent", damaged, {.isSilent = true}, Notice::None);
    row("silent, with standard error", damaged, {.hasStandardError = true, .isSilent = true},
        Notice::Line);
    row("for the console, without standard error", damaged, {.isForConsole = true}, Notice::None);
    row("for the console", damaged, {.hasStandardError = true, .isForConsole = true}, Notice::Line);
    row("cancelled in the window", ExitCode::Cancelled, {}, Notice::None);
    row("interrupted", ExitCode::Interrupted, {}, Notice::None);
    row("interrupted in a console", ExitCode::Interrupted, {.hasStandardError = true},
        Notice::Line);
}

void TestNotice::choosesTheWay()
{
    QFETCH(ExitCode, failure);
    QFETCH(NoticeFacts, facts);
    QTEST(noticeOf(failure, facts), "notice");
}

QTEST_APPLESS_MAIN(TestNotice)
#include "tst_notice.moc"
