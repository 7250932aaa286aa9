// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/ui/support/modalanswer.h"
#include "tests/ui/support/windowfixture.h"

#include <QAction>
#include <QFrame>
#include <QMenu>
#include <QStackedWidget>

// What a person does with the window itself: pages, menu, minimising, closing, dragging.
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
        fixture.click("advancedTabButton"); // once more does not uncheck it
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
    }

    void quitQuestion()
    {
        QFETCH(QMessageBox::StandardButton, answer);
        QFETCH(bool, quits);
        WindowFixture fixture;
        fixture.open();
        SeenBox box;
        bool quit = true;
        QTimer::singleShot(0, this, [&] {
            box = answerBox([&] { fixture.click("closeButton"); }, answer);
            // Behind a quit() in the queue; reached only when there was none.
            QTimer::singleShot(0, this, [&quit] {
                quit = false;
                QCoreApplication::exit(17);
            });
        });
        const int status = QApplication::exec();
        QCOMPARE(box, (SeenBox{"确认退出", "确定要退出 Kestrelpack 吗？", QMessageBox::Question,
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

    // The areas count from the window's corner as though they counted from each frame's parent.
    void pressStartsADrag_data()
    {
        QTest::addColumn<QString>("frame");
        QTest::addColumn<QPoint>("corner"); // 0: left or top edge, 1: right or bottom edge
        QTest::addColumn<QPoint>("beside");
        QTest::addColumn<bool>("drags");

        const QPoint topLeft(0, 0);
        const QPoint bottomRight(1, 1);
        QTest::newRow("header, first pixel") << "headerFrame" << topLeft << QPoint(0, 0) << true;
        QTest::newRow("header, last pixel") << "headerFrame" << bottomRight << QPoint(0, 0) << true;
        QTest::newRow("right of the header") << "headerFrame" << bottomRight << QPoint(1, 0) << false;
        QTest::newRow("below the header") << "headerFrame" << bottomRight << QPoint(0, 1) << false;
        QTest::newRow("strip, first pixel") << "frameMenu" << topLeft << QPoint(0, 0) << true;
        QTest::newRow("strip, last pixel") << "frameMenu" << bottomRight << QPoint(0, 0) << true;
        QTest::newRow("right of the strip") << "frameMenu" << bottomRight << QPoint(1, 0) << false;
        QTest::newRow("below the strip") << "frameMenu" << bottomRight << QPoint(0, 1) << false;
    }

    void pressStartsADrag()
    {
        QFETCH(QString, frame);
        QFETCH(QPoint, corner);
        QFETCH(QPoint, beside);
        QFETCH(bool, drags);
        WindowFixture fixture;
        fixture.open();
        // In the frame's parent's coordinates, used as the window's.
        const QRect area = fixture.find<QFrame>(qPrintable(frame))->geometry();
        const QPoint at(corner.x() == 0 ? area.left() : area.right(),
                        corner.y() == 0 ? area.top() : area.bottom());
        QCOMPARE(dragMoves(*fixture.window, at + beside), drags);
    }

    void dragFollowsTheMouseUntilTheRelease()
    {
        WindowFixture fixture;
        MainWindow &window = fixture.open();
        window.move(110, 70); // not where the screen begins
        const QPoint start = window.frameGeometry().topLeft();
        const QPoint grip(120, 15);
        QTest::mousePress(&window, Qt::LeftButton, {}, grip);
        send(window, QEvent::MouseMove, grip + QPoint(30, 40), Qt::NoButton, Qt::LeftButton);
        QCOMPARE(window.pos(), start + QPoint(30, 40));
        // The window has moved along, so the same place in it is further on the screen.
        send(window, QEvent::MouseMove, grip + QPoint(5, 5), Qt::NoButton, Qt::LeftButton);
        QCOMPARE(window.pos(), start + QPoint(35, 45));

        send(window, QEvent::MouseMove, grip, Qt::NoButton, Qt::NoButton); // not held
        QCOMPARE(window.pos(), start + QPoint(35, 45));
        send(window, QEvent::MouseButtonRelease, grip, Qt::RightButton, Qt::LeftButton);
        send(window, QEvent::MouseMove, grip + QPoint(1, 0), Qt::NoButton, Qt::LeftButton);
        QCOMPARE(window.pos(), start + QPoint(36, 45)); // the other button's release ends nothing

        send(window, QEvent::MouseButtonRelease, grip, Qt::LeftButton, Qt::NoButton);
        send(window, QEvent::MouseMove, grip + QPoint(50, 50), Qt::NoButton, Qt::LeftButton);
        QCOMPARE(window.pos(), start + QPoint(36, 45));
    }

    void dragsByTheFramesThemselves_data()
    {
        QTest::addColumn<QString>("widget");
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<Qt::MouseButton>("button");
        QTest::addColumn<bool>("drags");
        QTest::newRow("title") << "title_label" << QPoint(5, 5) << Qt::LeftButton << true;
        QTest::newRow("free part of the strip") << "frameMenu" << QPoint(30, 300) << Qt::LeftButton
                                                << true;
        QTest::newRow("header with the right button") << "title_label" << QPoint(5, 5)
                                                      << Qt::RightButton << false;
        QTest::newRow("free part of a page") << "basicPage" << QPoint(2, 200) << Qt::LeftButton
                                             << false;
        QTest::newRow("label on a page") << "folderLabel" << QPoint(3, 3) << Qt::LeftButton << false;
        QTest::newRow("button of the header") << "menuButton" << QPoint(-1, -1) << Qt::LeftButton
                                              << false;
        QTest::newRow("tab") << "advancedTabButton" << QPoint(5, 5) << Qt::LeftButton << false;
    }

    // Through the widget under the mouse, as the system delivers it.
    void dragsByTheFramesThemselves()
    {
        QFETCH(QString, widget);
        QFETCH(QPoint, at);
        QFETCH(Qt::MouseButton, button);
        QFETCH(bool, drags);
        WindowFixture fixture;
        MainWindow &window = fixture.open();
        auto *target = fixture.find<QWidget>(qPrintable(widget));
        if (at.x() < 0) { // a click would open the menu
            QTest::mousePress(target, button);
        } else {
            QTest::mousePress(target, button, {}, at);
        }
        const QPoint before = window.pos();
        const QPoint inWindow = target->mapTo(&window, at);
        send(window, QEvent::MouseMove, inWindow + QPoint(20, 20), Qt::NoButton, button);
        QCOMPARE(window.pos() != before, drags);
    }

private:
    static QString page(const WindowFixture &fixture)
    {
        return fixture.find<QStackedWidget>("stackedWidget")->currentWidget()->objectName();
    }

    static void send(QWidget &window, QEvent::Type type, const QPoint &position,
                     Qt::MouseButton button, Qt::MouseButtons held)
    {
        QMouseEvent event(type, position, window.mapToGlobal(position), button, held, {});
        QCoreApplication::sendEvent(&window, &event);
    }

    static bool dragMoves(QWidget &window, const QPoint &position)
    {
        const QPoint before = window.pos();
        send(window, QEvent::MouseButtonPress, position, Qt::LeftButton, Qt::LeftButton);
        send(window, QEvent::MouseMove, position + QPoint(7, 9), Qt::NoButton, Qt::LeftButton);
        send(window, QEvent::MouseButtonRelease, position, Qt::LeftButton, Qt::NoButton);
        return window.pos() == before + QPoint(7, 9);
    }
};

QTEST_MAIN(TestMainWindowFrame)

#include "tst_mainwindow_frame.moc"
