// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "ui/logappender.h"

#include "packaging/worker.h"
#include "tests/support/sanitizer.h"
#include "tests/support/waiting.h"
#include "tests/ui/support/jobfixture.h"
#include "tests/ui/support/modalanswer.h"

#include <QRegularExpression>
#include <QScrollBar>
#include <QThread>

namespace {

constexpr int floodLines = underSanitizer ? 10000 : 20000;
constexpr int shownAtOnce = 200; // a little less than one turn shows

// As long as most lines of the archiver. The waiting part of a flood is measured in characters.
QString lineOf(int number)
{
    return QStringLiteral("第 %1 行: program/data/usual.dll").arg(number);
}

QString linesUpTo(int count)
{
    QStringList lines;
    for (int number = 0; number < count; ++number) {
        lines.append(lineOf(number));
    }
    return lines.join('\n');
}

} // namespace

class TestLogAppender : public QObject
{
    Q_OBJECT

private slots:
    void keepsTheTextAsItStands_data()
    {
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QString>("shown");

        QTest::newRow("Chinese") << QStringList{"错误：找不到", "文件"} << "错误：找不到\n文件";
        QTest::newRow("blanks at both ends") << QStringList{"  a  ", "\tb"} << "  a  \n\tb";
        QTest::newRow("markup in a file name")
            << QStringList{"<b>bold</b>.exe", "a &amp; b", "x"} << "<b>bold</b>.exe\na &amp; b\nx";
        QTest::newRow("several lines at once") << QStringList{"a\nb\n", "c"} << "a\nb\n\nc";
        QTest::newRow("empty lines") << QStringList{"a", "", "", "b"} << "a\n\n\nb";
        QTest::newRow("backspaces of a progress line")
            << QStringList{"  0%\b\b\b\b    \b\b\b\b 17% + a.dll"}
            << "  0%\b\b\b\b    \b\b\b\b 17% + a.dll";
    }

    void keepsTheTextAsItStands()
    {
        QFETCH(QStringList, lines);
        QTextEdit pane;
        LogAppender log(&pane);
        for (const QString &line : lines) {
            log.append(line);
        }
        QTEST(pane.toPlainText(), "shown");
    }

    void backspacesTakeNoRoom()
    {
        QTextEdit pane;
        pane.setLineWrapMode(QTextEdit::NoWrap);
        LogAppender log(&pane);
        log.append("17% + a.dll");
        const qreal plain = pane.document()->idealWidth();
        pane.clear();
        log.append("17% \b\b\b\b\b\b\b\b+ a.dll");
        const qreal hidden = pane.document()->idealWidth();
        QVERIFY2(hidden - plain < 6, qPrintable(QString("%1 and %2").arg(plain).arg(hidden)));
    }

    void fewLinesAppearAtOnce()
    {
        QTextEdit pane;
        LogAppender log(&pane);
        for (int number = 0; number < shownAtOnce; ++number) {
            log.append(lineOf(number));
        }
        QCOMPARE(pane.toPlainText(), linesUpTo(shownAtOnce));
    }

    void scrollsAlongOnlyFromTheEnd()
    {
        QTextEdit pane;
        pane.resize(200, 100);
        pane.show();
        QVERIFY(QTest::qWaitForWindowExposed(&pane, patience));
        LogAppender log(&pane);
        for (int number = 0; number < 50; ++number) {
            log.append(lineOf(number));
        }
        QScrollBar *bar = pane.verticalScrollBar();
        QVERIFY(bar->maximum() > 0);
        QCOMPARE(bar->value(), bar->maximum());
        bar->setValue(10); // a person has scrolled up
        log.append("one more");
        QCOMPARE(bar->value(), 10);
    }

    void floodLosesNothingAndLeavesTheWindowItsTurns()
    {
        JobFixture fixture;
        fixture.open();
        QThread thread;
        Worker worker;
        worker.moveToThread(&thread);
        connect(&worker, &Worker::logMessage, fixture.window.get(), &MainWindow::onWorkerLog);
        thread.start();

        const auto *document = fixture.find<QTextEdit>("logTextEdit")->document();
        int turnsDuringTheFlood = 0;
        QTimer turns;
        connect(&turns, &QTimer::timeout, this, [&] {
            if (document->blockCount() > shownAtOnce && document->blockCount() < floodLines) {
                ++turnsDuringTheFlood;
            }
        });
        turns.start(0);
        QMetaObject::invokeMethod(&worker, [&worker] {
            for (int number = 0; number < floodLines; ++number) {
                emit worker.logMessage(lineOf(number));
            }
        });
        WAIT_COMPARE(document->blockCount(), floodLines);
        thread.quit();
        thread.wait();
        QCOMPARE(document->toPlainText(), linesUpTo(floodLines));
        QVERIFY(turnsDuringTheFlood > 3);
    }

    void longTextStaysAsItStands_data()
    {
        QTest::addColumn<QString>("lineEnd");
        QTest::newRow("line feeds") << "\n";
        QTest::newRow("carriage returns and line feeds") << "\r\n";
    }
    void longTextStaysAsItStands()
    {
        QFETCH(QString, lineEnd);
        QTextEdit pane;
        LogAppender log(&pane);
        log.append("before");
        log.append(linesUpTo(5000).replace('\n', lineEnd) + lineEnd);
        log.append("after");
        bool through = false;
        log.whenShown([&through] { through = true; });
        WAIT_VERIFY(through);
        QCOMPARE(pane.toPlainText(), "before\n" + linesUpTo(5000) + "\n\nafter");
    }

    void floodBeyondTheLimitLosesItsMiddleAndSaysSo()
    {
        QTextEdit pane;
        constexpr qsizetype mostWaiting = 400000;
        LogAppender log(&pane, mostWaiting);
        const QString line(99, 'x');
        const int lines = 10000;
        for (int chunk = 0; chunk < 50; ++chunk) {
            log.append(QStringList(lines / 50, line).join('\n'));
        }
        log.append("the end");
        bool through = false;
        log.whenShown([&through] { through = true; });
        WAIT_VERIFY(through);
        const QString text = pane.toPlainText();
        const auto match = QRegularExpression("\nx+\n（此处省略 (\\d+) 行）\nx+\n").match(text);
        QVERIFY(match.hasMatch());
        QCOMPARE(text.count(line) + match.captured(1).toInt(), lines / 50 * 50);
        QVERIFY(text.size() < 500000);
        QVERIFY(text.startsWith(line) && text.endsWith("\nthe end"));
    }

    void endOfAJobComesBehindTheFlood()
    {
        JobFixture fixture;
        fixture.open();
        fixture.find<QPushButton>("startButton")->setEnabled(false);
        constexpr int lines = 5000;
        for (int number = 0; number < lines; ++number) {
            fixture.window->onWorkerLog(lineOf(number));
        }
        QString logAtTheBox;
        const SeenBox box = answerBox(
            [&] {
                fixture.window->onWorkerFinished(true);
                WAIT_VERIFY(!fixture.isBusy() && QApplication::activeModalWidget() == nullptr);
            },
            QMessageBox::Ok, [&] { logAtTheBox = fixture.log(); });
        QCOMPARE(box.title, "完成");
        QCOMPARE(logAtTheBox, linesUpTo(lines));
    }

    void clearDropsWhatWaits()
    {
        QTextEdit pane;
        LogAppender log(&pane);
        for (int number = 0; number < 5000; ++number) {
            log.append(lineOf(number));
        }
        log.clear();
        log.append("after");
        bool through = false;
        log.whenShown([&through] { through = true; });
        WAIT_VERIFY(through);
        QCOMPARE(pane.toPlainText(), "after");
    }

    void keepsNoUndoHistory()
    {
        QTextEdit pane;
        LogAppender log(&pane);
        log.append("a line");
        QVERIFY(!pane.isUndoRedoEnabled());
        QCOMPARE(pane.document()->availableUndoSteps(), 0);
    }
};

QTEST_MAIN(TestLogAppender)

#include "tst_logappender.moc"
