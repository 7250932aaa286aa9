// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/ui/support/windowfixture.h"

#include <QFrame>

// The window has no system frame. A person moves it by its header and its strip.
class TestMainWindowDrag : public QObject
{
    Q_OBJECT

private slots:
    // The coordinates of the areas count from the frame's parent, but the window reads them as its
    // own.
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
        QTest::newRow("right of the header")
            << "headerFrame" << bottomRight << QPoint(1, 0) << false;
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
        // The geometry counts from the frame's parent, but is used in the window's coordinates.
        const QRect area = fixture.find<QFrame>(qPrintable(frame))->geometry();
        const QPoint at(corner.x() == 0 ? area.left() : area.right(),
                        corner.y() == 0 ? area.top() : area.bottom());
        const QPoint before = fixture.window->pos();
        QCOMPARE(press(*fixture.window, at + beside), drags);
        QCOMPARE(moveTo(*fixture.window, at + beside + QPoint(7, 9)), drags);
        QCOMPARE(fixture.window->pos(), drags ? before + QPoint(7, 9) : before);
        QCOMPARE(release(*fixture.window, at, Qt::LeftButton), drags);
    }

    void dragFollowsTheMouseUntilTheRelease()
    {
        WindowFixture fixture;
        MainWindow &window = fixture.open();
        window.move(110, 70); // not at the screen's corner
        const QPoint start = window.frameGeometry().topLeft();
        const QPoint grip(120, 15);
        QVERIFY(!moveTo(window, grip + QPoint(3, 3))); // before the press
        QVERIFY(press(window, grip));
        QVERIFY(moveTo(window, grip + QPoint(30, 40)));
        QCOMPARE(window.pos(), start + QPoint(30, 40));
        // The window has moved with the mouse, so the same place in it is further on the screen.
        QVERIFY(moveTo(window, grip + QPoint(5, 5)));
        QCOMPARE(window.pos(), start + QPoint(35, 45));

        QVERIFY(!moveTo(window, grip, Qt::RightButton)); // the left button is not held
        QCOMPARE(window.pos(), start + QPoint(35, 45));
        QVERIFY(!release(window, grip, Qt::RightButton));
        QVERIFY(moveTo(window, grip + QPoint(1, 0)));
        QCOMPARE(window.pos(), start + QPoint(36, 45)); // releasing the other button ends nothing

        QVERIFY(release(window, grip, Qt::LeftButton));
        QVERIFY(!moveTo(window, grip + QPoint(50, 50)));
        QCOMPARE(window.pos(), start + QPoint(36, 45));
        QVERIFY(!release(window, grip, Qt::LeftButton)); // no drag to end
    }

    void dragsByTheFramesThemselves_data()
    {
        QTest::addColumn<QString>("widget");
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<Qt::MouseButton>("button");
        QTest::addColumn<bool>("drags");
        QTest::newRow("title") << "title_label" << QPoint(5, 5) << Qt::LeftButton << true;
        QTest::newRow("free part of the strip")
            << "frameMenu" << QPoint(10, 300) << Qt::LeftButton << true;
        QTest::newRow("header with the right button")
            << "title_label" << QPoint(5, 5) << Qt::RightButton << false;
        QTest::newRow("free part of a page")
            << "basicPage" << QPoint(2, 200) << Qt::LeftButton << false;
        QTest::newRow("label on a page")
            << "folderLabel" << QPoint(3, 3) << Qt::LeftButton << false;
        QTest::newRow("button of the header")
            << "menuButton" << QPoint(-1, -1) << Qt::LeftButton << false;
        QTest::newRow("tab") << "advancedTabButton" << QPoint(5, 5) << Qt::LeftButton << false;
    }

    // Sends events through the widget under the mouse, as the system does.
    void dragsByTheFramesThemselves()
    {
        QFETCH(QString, widget);
        QFETCH(QPoint, at);
        QFETCH(Qt::MouseButton, button);
        QFETCH(bool, drags);
        WindowFixture fixture;
        MainWindow &window = fixture.open();
        auto *target = fixture.find<QWidget>(qPrintable(widget));
        if (at.x() < 0) { // clicking would open the menu
            QTest::mousePress(target, button);
        } else {
            QTest::mousePress(target, button, {}, at);
        }
        const QPoint before = window.pos();
        const QPoint inWindow = target->mapTo(&window, at);
        moveTo(window, inWindow + QPoint(20, 20), button);
        QCOMPARE(window.pos() != before, drags);
    }

private:
    // Each function returns true if the window accepted the event.
    static bool send(QWidget &window, QEvent::Type type, const QPoint &position,
                     Qt::MouseButton button, Qt::MouseButtons held)
    {
        QMouseEvent event(type, position, window.mapToGlobal(position), button, held, {});
        QCoreApplication::sendEvent(&window, &event);
        return event.isAccepted();
    }

    static bool press(QWidget &window, const QPoint &position)
    {
        return send(window, QEvent::MouseButtonPress, position, Qt::LeftButton, Qt::LeftButton);
    }

    static bool moveTo(QWidget &window, const QPoint &position,
                       Qt::MouseButtons held = Qt::LeftButton)
    {
        return send(window, QEvent::MouseMove, position, Qt::NoButton, held);
    }

    static bool release(QWidget &window, const QPoint &position, Qt::MouseButton button)
    {
        return send(window, QEvent::MouseButtonRelease, position, button, Qt::NoButton);
    }
};

QTEST_MAIN(TestMainWindowDrag)

#include "tst_mainwindow_drag.moc"
