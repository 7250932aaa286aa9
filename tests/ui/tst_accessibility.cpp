// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/support/waiting.h"
#include "tests/ui/support/modalanswer.h"
#include "tests/ui/support/windowfixture.h"

#include <QAccessible>
#include <QCheckBox>
#include <QDialog>
#include <QStackedWidget>
#include <QToolButton>

// The window without a mouse and without a screen.
class TestAccessibility : public QObject
{
    Q_OBJECT

private slots:
    void everyControlHasAName()
    {
        WindowFixture fixture;
        fixture.open();
        const auto widgets = fixture.window->findChildren<QWidget *>();
        int controls = 0;
        for (QWidget *widget : widgets) {
            const bool isControl = qobject_cast<QAbstractButton *>(widget) != nullptr
                || qobject_cast<QLineEdit *>(widget) != nullptr
                || qobject_cast<QComboBox *>(widget) != nullptr
                || qobject_cast<QTextEdit *>(widget) != nullptr
                || qobject_cast<QProgressBar *>(widget) != nullptr;
            if (!isControl || widget->objectName().isEmpty()
                || widget->objectName().startsWith("qt_")) {
                continue;
            }
            ++controls;
            const auto *interface = QAccessible::queryAccessibleInterface(widget);
            QVERIFY(interface != nullptr);
            QVERIFY2(!interface->text(QAccessible::Name).isEmpty(),
                     qPrintable(widget->objectName()));
        }
        QCOMPARE(controls, 25); // 12 buttons, 4 check boxes, 3 fields, 4 lists, log and progress
    }

    void browseButtonsSayWhatTheyChoose_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::addColumn<QString>("name");
        QTest::newRow("folder") << QByteArray("selectFolderButton") << "选择源文件夹";
        QTest::newRow("output") << QByteArray("outputButton") << "选择输出目录";
        QTest::newRow("program") << QByteArray("mainExeButton") << "选择主程序";
        QTest::newRow("icon") << QByteArray("iconButton") << "选择图标文件";
        QTest::newRow("menu") << QByteArray("menuButton") << "菜单";
        QTest::newRow("minimise") << QByteArray("minButton") << "最小化";
        QTest::newRow("close") << QByteArray("closeButton") << "关闭";
    }

    void browseButtonsSayWhatTheyChoose()
    {
        QFETCH(QByteArray, button);
        WindowFixture fixture;
        fixture.open();
        QTEST(fixture.find<QAbstractButton>(button.constData())->accessibleName(), "name");
    }

    void tabOrderFollowsThePage_data()
    {
        QTest::addColumn<QByteArray>("tab");
        QTest::addColumn<QStringList>("order");
        // Only the checked one of the two tabs gets the focus. The arrow keys move between the
        // tabs.
        const QStringList header = {"menuButton", "minButton", "closeButton"};
        QTest::newRow("basic page") << QByteArray("basicTabButton")
                                    << QStringList{"basicTabButton"} + header
                + QStringList{"folderLineEdit", "selectFolderButton", "outputLineEdit",
                              "outputButton",   "mainExeComboBox",    "mainExeButton",
                              "startButton",    "logTextEdit"};
        QTest::newRow("advanced page") << QByteArray("advancedTabButton")
                                       << QStringList{"advancedTabButton"} + header
                + QStringList{"iconLineEdit", "iconButton", "cmbCompression", "cmbMethod",
                              "cmbDictSize",  "chkCleanup", "chkTemp",        "chkAdmin",
                              "chkEncrypt",   "resetButton"};
    }

    void tabOrderFollowsThePage()
    {
        QFETCH(QByteArray, tab);
        QFETCH(QStringList, order);
        WindowFixture fixture;
        MainWindow &window = fixture.open();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window, patience));
        fixture.click(tab.constData());
        fixture.find<QWidget>(qPrintable(order[0]))->setFocus();
        QStringList seen;
        for (qsizetype step = 0; step < order.size(); ++step) {
            seen.append(QApplication::focusWidget()->objectName());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(seen, order);
        QCOMPARE(QApplication::focusWidget()->objectName(), order[0]); // back to the first
    }

    void startsOnTheTabOfItsPage()
    {
        WindowFixture fixture;
        MainWindow &window = fixture.open();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window, patience));
        QCOMPARE(QApplication::focusWidget()->objectName(), "basicTabButton");
    }

    void buttonsAnswerToSpace_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::addColumn<QString>("opened");
        QTest::newRow("folder") << QByteArray("selectFolderButton") << "选择源文件夹";
        QTest::newRow("output") << QByteArray("outputButton") << "选择输出目录";
        QTest::newRow("program") << QByteArray("mainExeButton") << "选择主程序";
        QTest::newRow("icon") << QByteArray("iconButton") << "选择图标文件";
        QTest::newRow("start") << QByteArray("startButton") << "警告";
        QTest::newRow("reset") << QByteArray("resetButton") << "重置确认";
        QTest::newRow("close") << QByteArray("closeButton") << "确认退出";
        QTest::newRow("menu") << QByteArray("menuButton") << "";
    }

    // Escape closes what each button opens.
    void buttonsAnswerToSpace()
    {
        QFETCH(QByteArray, button);
        WindowFixture fixture;
        fixture.open();
        auto *widget = fixture.find<QAbstractButton>(button.constData());
        if (!widget->isVisible()) {
            fixture.click("advancedTabButton");
        }
        QStringList titles;
        whileModal([&] { QTest::keyClick(widget, Qt::Key_Space); },
                   [&](QWidget *modal) {
                       titles.append(modal->windowTitle());
                       QTest::keyClick(modal, Qt::Key_Escape);
                   });
        QFETCH(QString, opened);
        QCOMPARE(titles, QStringList{opened});
    }

    void tabsAndMinimisingAnswerToKeys()
    {
        WindowFixture fixture;
        fixture.open();
        QTest::keyClick(fixture.find<QToolButton>("basicTabButton"), Qt::Key_Down);
        QCOMPARE(fixture.find<QStackedWidget>("stackedWidget")->currentIndex(), 1);
        QTest::keyClick(fixture.find<QCheckBox>("chkAdmin"), Qt::Key_Space);
        QVERIFY(fixture.window->isAdminRequired());
        QTest::keyClick(fixture.find<QToolButton>("advancedTabButton"), Qt::Key_Up);
        QCOMPARE(fixture.find<QStackedWidget>("stackedWidget")->currentIndex(), 0);
        QTest::keyClick(fixture.find<QPushButton>("minButton"), Qt::Key_Space);
        QVERIFY(fixture.window->isMinimized());
    }

    void menuAnswersToKeys()
    {
        WindowFixture fixture;
        fixture.open();
        QStringList opened;
        whileModal([&] { QTest::keyClick(fixture.find<QPushButton>("menuButton"), Qt::Key_Space); },
                   [&](QWidget *modal) {
                       opened.append(modal->metaObject()->className());
                       if (opened.size() == 1) {
                           QTest::keyClick(modal, Qt::Key_Down);
                           QTest::keyClick(modal, Qt::Key_Return);
                       } else {
                           QTest::keyClick(modal, Qt::Key_Escape);
                       }
                   });
        QCOMPARE(opened, (QStringList{"QMenu", "AboutDialog"}));
    }
};

QTEST_MAIN(TestAccessibility)

#include "tst_accessibility.moc"
