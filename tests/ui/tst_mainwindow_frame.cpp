// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/ui/support/modalanswer.h"
#include "tests/ui/support/windowfixture.h"

#include <QAction>
#include <QMenu>
#include <QStackedWidget>

// A person's actions on the window itself: pages, menu, minimising, closing.
class TestMainWindowFrame : public QObject
{
    Q_OBJECT

private slots:
    void startsOnTheBasicPage()
    {
        WindowFixture fixture;
        fixture.open();
        QCOMPARE(page(fixture), "basicPage");
        QVERIFY(fixture.find<QAbstractButton>("basicTabButton")->isChecked());
        QVERIFY(!fixture.find<QAbstractButton>("advancedTabButton")->isChecked());
    }

    void tabsSwitchPages()
    {
        WindowFixture fixture;
        fixture.open();
        fixture.click("advancedTabButton");
        QCOMPARE(page(fixture), "advancedPage");
        QVERIFY(!fixture.find<QAbstractButton>("basicTabButton")->isChecked());
        QVERIFY(fixture.find<QAbstractButton>("advancedTabButton")->isChecked());
        fixture.click("advancedTabButton"); // a second click does not uncheck it
        QVERIFY(fixture.find<QAbstractButton>("advancedTabButton")->isChecked());
        fixture.click("basicTabButton");
        QCOMPARE(page(fixture), "basicPage");
        QCOMPARE(fixture.log(), "");
        QCOMPARE(fixture.settings.keys(), QStringList());
    }

    void minimises()
    {
        WindowFixture fixture;
        fixture.open();
        fixture.click("minButton");
        QVERIFY(fixture.window->isMinimized());
    }

    void quitQuestion_data()
    {
        QTest::addColumn<QMessageBox::StandardButton>("answer");
        QTest::addColumn<bool>("quits");
        QTest::newRow("Yes") << QMessageBox::Yes << true;
        QTest::newRow("No") << QMessageBox::No << false;
        QTest::newRow("Escape") << QMessageBox::NoButton << false;
        QTest::newRow("closing the box") << QMessageBox::Close << false;
    }

    void quitQuestion()
    {
        QFETCH(QMessageBox::StandardButton, answer);
        QFETCH(bool, quits);
        WindowFixture fixture;
        fixture.open();
        SeenBox box;
        bool quit = true;
        QObject thisRow; // its timers end with this row
        QTimer::singleShot(0, &thisRow, [&] {
            box = answerBox([&] { fixture.click("closeButton"); }, answer);
            // Comes after a quit() in the queue, so it runs only if there was no quit().
            QTimer::singleShot(0, &thisRow, [&quit] {
                quit = false;
                QCoreApplication::exit(17);
            });
        });
        const int status = QApplication::exec();
        QCOMPARE(box,
                 (SeenBox{"确认退出", "确定要退出 Kestrelpack 吗？", QMessageBox::Question,
                          QMessageBox::Yes | QMessageBox::No, fixture.window.get()}));
        QCOMPARE(quit, quits);
        QCOMPARE(status, quits ? 0 : 17);
        if (!quits) {
            QVERIFY(fixture.window->isVisible());
        }
    }

    void menuOpensBelowItsButton()
    {
        WindowFixture fixture;
        fixture.open();
        QPoint corner;
        QStringList actions;
        const int opened = whileModal([&] { fixture.click("menuButton"); },
                                      [&](QWidget *modal) {
                                          corner = modal->pos();
                                          for (const QAction *action : modal->actions()) {
                                              actions.append(action->text());
                                          }
                                          QTest::keyClick(modal, Qt::Key_Escape);
                                      });
        QCOMPARE(opened, 1);
        QCOMPARE(actions, QStringList{"关于Kestrelpack"});
        const auto *button = fixture.find<QPushButton>("menuButton");
        QCOMPARE(corner, button->mapToGlobal(QPoint(0, button->height())));
    }

    void menuShowsTheAboutDialogTwice()
    {
        WindowFixture fixture;
        fixture.open();
        for (int time = 0; time < 2; ++time) {
            QStringList opened;
            whileModal([&] { fixture.click("menuButton"); },
                       [&](QWidget *modal) {
                           opened.append(modal->metaObject()->className());
                           if (auto *menu = qobject_cast<QMenu *>(modal)) {
                               QTest::mouseClick(menu, Qt::LeftButton, {},
                                                 menu->actionGeometry(menu->actions()[0]).center());
                           } else {
                               QCOMPARE(modal->parentWidget(), fixture.window.get());
                               QTest::keyClick(modal, Qt::Key_Escape);
                           }
                       });
            QCOMPARE(opened, (QStringList{"QMenu", "AboutDialog"}));
            QCOMPARE(fixture.window->findChild<QDialog *>("AboutDialog"), nullptr);
        }
    }

private:
    static QString page(const WindowFixture &fixture)
    {
        return fixture.find<QStackedWidget>("stackedWidget")->currentWidget()->objectName();
    }
};

QTEST_MAIN(TestMainWindowFrame)

#include "tst_mainwindow_frame.moc"
