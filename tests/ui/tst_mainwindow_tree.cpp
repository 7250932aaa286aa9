// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/ui/support/windowfixture.h"
#include "tests/ui/widgetdescription.h"
#include "tests/ui/widgettable.h"

#include <QAbstractScrollArea>
#include <QButtonGroup>
#include <QGraphicsDropShadowEffect>
#include <QLayout>
#include <QRegularExpression>
#include <QStackedWidget>
#include <QThread>

// The whole widget tree against the tables; without a style sheet, which would change sizes.
class TestMainWindowTree : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QApplication::setStyle("Fusion"); // everywhere the same: styles have sizes of their own
        m_fixture = std::make_unique<WindowFixture>();
        m_fixture->open();
    }
    void cleanupTestCase() { m_fixture.reset(); }

    void widgetIsAsInTheTable_data()
    {
        QTest::addColumn<int>("row");
        for (int row = 0; row < int(std::size(widgetTable)); ++row) {
            QTest::newRow(widgetTable[row].name) << row;
        }
    }

    void widgetIsAsInTheTable()
    {
        QFETCH(int, row);
        const WidgetRow &expected = widgetTable[row];
        const auto found = window().findChildren<QWidget *>(expected.name);
        QCOMPARE(found.size(), 1);
        QCOMPARE(found[0]->metaObject()->className(), expected.className);
        QCOMPARE(placeOf(*found[0]), QString(expected.place));
        QCOMPARE(settingsOf(*found[0]), QString(expected.settings));
        QCOMPARE(otherSettingsOf(*found[0]).join(" "), QString(expected.otherSettings));
    }

    void layoutIsAsInTheTable_data()
    {
        QTest::addColumn<int>("row");
        for (int row = 0; row < int(std::size(layoutTable)); ++row) {
            QTest::newRow(layoutTable[row].name) << row;
        }
    }

    void layoutIsAsInTheTable()
    {
        QFETCH(int, row);
        const LayoutRow &expected = layoutTable[row];
        const auto *layout = window().findChild<QLayout *>(expected.name);
        QVERIFY(layout != nullptr);
        QCOMPARE(layout->metaObject()->className(), expected.className);
        QCOMPARE(layoutDescription(*layout), QString(expected.description));
        QCOMPARE(layout->sizeConstraint(), QLayout::SetDefaultConstraint);
    }

    void iconIsAsInTheTable_data()
    {
        QTest::addColumn<int>("row");
        for (int row = 0; row < int(std::size(iconTable)); ++row) {
            QTest::newRow(iconTable[row].button) << row;
        }
    }

    void iconIsAsInTheTable()
    {
        QFETCH(int, row);
        const IconRow &expected = iconTable[row];
        const auto *button = window().findChild<QAbstractButton *>(expected.button);
        const QSize size = button->iconSize();
        const auto shown = [button, size](QIcon::State state) {
            return button->icon().pixmap(size, QIcon::Normal, state).toImage();
        };
        const auto file = [size](const char *path) {
            return QIcon(QString(path)).pixmap(size).toImage();
        };
        QVERIFY(!file(expected.unchecked).isNull());
        QCOMPARE(shown(QIcon::Off), file(expected.unchecked));
        QCOMPARE(shown(QIcon::On), file(expected.checked));
    }

    void listHasItsItems_data()
    {
        QTest::addColumn<QString>("list");
        QTest::addColumn<QStringList>("items");
        QTest::newRow("level") << "cmbCompression"
                               << QStringList{"存储", "最快", "快速", "标准", "最大", "极限"};
        QTest::newRow("method") << "cmbMethod" << QStringList{"LZMA", "LZMA2"};
        QTest::newRow("dictionary")
            << "cmbDictSize" << QStringList{"64 KB", "1 MB", "16 MB", "32 MB", "64 MB"};
        QTest::newRow("programs") << "mainExeComboBox" << QStringList{};
    }

    void listHasItsItems()
    {
        QFETCH(QString, list);
        const auto *combo = window().findChild<QComboBox *>(list);
        QStringList items;
        for (int i = 0; i < combo->count(); ++i) {
            items.append(combo->itemText(i));
        }
        QTEST(items, "items");
    }

    // Nothing but the tables' widgets; a list, a text pane and a menu have inner parts of Qt's own.
    void thereIsNothingElse()
    {
        QStringList unknown;
        collectUnknown(&window(), unknown);
        QCOMPARE(unknown, QStringList{"QMenu in MainWindow"});
        QCOMPARE(window().findChildren<QLayout *>(QRegularExpression("Layout")).size(),
                 qsizetype(std::size(layoutTable)));
    }

    void windowIsFramelessWithAShadow()
    {
        QCOMPARE(window().objectName(), "MainWindow");
        QCOMPARE(window().windowTitle(), "Kestrel Pack");
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

    void progressBarIsReady()
    {
        const auto *bar = window().findChild<QProgressBar *>();
        QCOMPARE(bar->minimum(), 0);
        QCOMPARE(bar->maximum(), 100);
        QCOMPARE(bar->value(), 0);
        QVERIFY(bar->isTextVisible());
        QCOMPARE(bar->orientation(), Qt::Horizontal);
        QVERIFY(!bar->invertedAppearance());
        QCOMPARE(bar->textDirection(), QProgressBar::TopToBottom);
    }

    void workerThreadRuns()
    {
        const auto threads = window().findChildren<QThread *>();
        QCOMPARE(threads.size(), 1);
        QVERIFY(threads[0]->isRunning());
    }

private:
    MainWindow &window() const { return *m_fixture->window; }

    static bool isKnown(const QString &name)
    {
        return std::any_of(std::begin(widgetTable), std::end(widgetTable),
                           [&name](const WidgetRow &row) { return name == row.name; });
    }

    static void collectUnknown(const QWidget *parent, QStringList &unknown)
    {
        const auto children = parent->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
        for (const QWidget *child : children) {
            if (!isKnown(child->objectName())) {
                unknown.append(QStringLiteral("%1 in %2")
                                   .arg(child->metaObject()->className(), parent->objectName()));
            } else if (qobject_cast<const QAbstractScrollArea *>(child) == nullptr
                       && qobject_cast<const QComboBox *>(child) == nullptr) {
                collectUnknown(child, unknown);
            }
        }
    }

    std::unique_ptr<WindowFixture> m_fixture;
};

QTEST_MAIN(TestMainWindowTree)

#include "tst_mainwindow_tree.moc"
