// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// The window has no system frame. This file does what a frame would do (minimise, close, drag,
// shadow), and switches the tabs.

#include "ui/mainwindow.h"
#include "ui_mainwindow.h"

#include <QButtonGroup>
#include <QGraphicsDropShadowEffect>
#include <QMessageBox>
#include <QMouseEvent>

void MainWindow::groupTabButtons()
{
    tabButtonGroup = new QButtonGroup(this);
    tabButtonGroup->addButton(ui->basicTabButton, 0);
    tabButtonGroup->addButton(ui->advancedTabButton, 1);
    connect(
        tabButtonGroup, &QButtonGroup::buttonClicked, tabButtonGroup,
        [this](QAbstractButton *button) { onTabButtonClicked(tabButtonGroup->id(button)); },
        Qt::DirectConnection);
}

void MainWindow::makeFrameless()
{
    setAttribute(Qt::WA_TranslucentBackground);

    auto *shadow = new QGraphicsDropShadowEffect(this);
    shadow->setBlurRadius(20.0);
    shadow->setColor(QColor(0, 0, 0, 80));
    shadow->setOffset(0, 0);
    ui->centralwidget->setGraphicsEffect(shadow);
}

void MainWindow::onTabButtonClicked(int index)
{
    ui->stackedWidget->setCurrentIndex(index);
}

void MainWindow::onMinimizeButtonClicked()
{
    showMinimized();
}

void MainWindow::onCloseButtonClicked()
{
    const auto answer = QMessageBox::question(this, tr("确认退出"),
                                              tr("确定要退出 Kestrelpack 吗？"),
                                              QMessageBox::Yes | QMessageBox::No);
    if (answer == QMessageBox::Yes) {
        QCoreApplication::quit();
    }
}

// `position` is relative to the window, but it is compared as if it were relative to the parent of
// each frame. So the areas that start a drag are a few pixels away from the frames.
bool MainWindow::startsDrag(const QPoint &position) const
{
    const auto holds = [&position](const QFrame *frame) {
        return frame->rect().contains(frame->mapFromParent(position));
    };
    return holds(ui->headerFrame) || holds(ui->frameMenu);
}

void MainWindow::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !startsDrag(event->position().toPoint())) {
        QMainWindow::mousePressEvent(event);
        return;
    }
    dragging = true;
    dragStartPosition = event->globalPosition().toPoint();
    windowStartPosition = frameGeometry().topLeft();
    event->accept();
}

void MainWindow::mouseMoveEvent(QMouseEvent *event)
{
    if (!dragging || !event->buttons().testFlag(Qt::LeftButton)) {
        QMainWindow::mouseMoveEvent(event);
        return;
    }
    move(event->globalPosition().toPoint() - dragStartPosition + windowStartPosition);
    event->accept();
}

void MainWindow::mouseReleaseEvent(QMouseEvent *event)
{
    if (!dragging || event->button() != Qt::LeftButton) {
        QMainWindow::mouseReleaseEvent(event);
        return;
    }
    dragging = false;
    event->accept();
}
