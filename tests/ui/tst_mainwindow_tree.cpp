// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/support/builtfile.h"
#include "tests/ui/support/windowfixture.h"
#include "tests/ui/widgettree.h"

#include <QButtonGroup>
#include <QGraphicsDropShadowEffect>
#include <QStackedWidget>
#include <QThread>

// The widgets of the window on a first start, without a style sheet, which would change sizes.
class TestMainWindowTree : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QApplication::setStyle("Fusion"); // the same everywhere: each style has different sizes
        m_fixture = std::make_unique<WindowFixture>();
        m_fixture->open();
    }
    void cleanupTestCase() { m_fixture.reset(); }

    // The file has the output of widgetTree(), checked by a person. The test shows a line that
    // differs. KESTRELPACK_WRITE_TREE=FILE in the environment writes the present tree.
    void widgetsAndLayoutsAreAsInTheFile()
    {
        const QStringList lines = widgetTree(window());
        const QString copy = qEnvironmentVariable("KESTRELPACK_WRITE_TREE");
        QVERIFY(copy.isEmpty() || writeFile(copy, lines.join('\n').toUtf8() + '\n'));
        QFile file(builtFile(KESTRELPACK_TEST_DATA) + "/window/tree.txt");
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QStringList expected
            = QString::fromUtf8(file.readAll()).remove('\r').chopped(1).split('\n');
        for (qsizetype i = 0; i < std::min(lines.size(), expected.size()); ++i) {
            QVERIFY2(lines[i] == expected[i],
                     qPrintable(QStringLiteral("line %1\n  is       %2\n  expected %3")
                                    .arg(i + 1)
                                    .arg(lines[i], expected[i])));
        }
        QCOMPARE(lines.size(), expected.size());
    }

    void windowIsFramelessWithAShadow()
    {
        QCOMPARE(window().size(), QSize(436, 536));
        QCOMPARE(window().windowFlags(), Qt::Window | Qt::FramelessWindowHint);
        QVERIFY(window().testAttribute(Qt::WA_TranslucentBackground));
        QCOMPARE(window().findChild<QStackedWidget *>()->currentIndex(), 0);

        const auto *shadow
            = qobject_cast<QGraphicsDropShadowEffect *>(window().centralWidget()->graphicsEffect());
        QVERIFY(shadow != nullptr);
        QCOMPARE(shadow->blurRadius(), 20.0);
        QCOMPARE(shadow->color(), QColor(0, 0, 0, 80));
        QCOMPARE(shadow->offset(), QPointF(0, 0));
    }

    void tabsAreOneExclusiveGroup()
    {
        const auto *group = window().findChild<QButtonGroup *>();
        QVERIFY(group != nullptr);
        QCOMPARE(group->parent(), &window());
        QVERIFY(group->exclusive());
        QCOMPARE(group->buttons().size(), 2);
        QCOMPARE(group->button(0)->objectName(), "basicTabButton");
        QCOMPARE(group->button(1)->objectName(), "advancedTabButton");
    }

    void workerThreadRuns()
    {
        const auto threads = window().findChildren<QThread *>();
        QCOMPARE(threads.size(), 1);
        QVERIFY(threads[0]->isRunning());
    }

private:
    MainWindow &window() const { return *m_fixture->window; }

    std::unique_ptr<WindowFixture> m_fixture;
};

QTEST_MAIN(TestMainWindowTree)

#include "tst_mainwindow_tree.moc"
