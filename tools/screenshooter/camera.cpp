// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tools/screenshooter/camera.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QTimer>
#include <QWidget>

#include <algorithm>

namespace {

constexpr int edge = 16;
const QColor ground(0xdf, 0xe6, 0xea);
const QColor frameLine(0xc4, 0xcd, 0xd3);

// Returns the windows in their order on the screen: a window that opened later is above.
QWidgetList shownWindows()
{
    QWidgetList windows;
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible()) {
            windows.append(window);
        }
    }
    std::stable_sort(windows.begin(), windows.end(), [](const QWidget *left, const QWidget *right) {
        return left->parentWidget() == nullptr && right->parentWidget() != nullptr;
    });
    return windows;
}

QWidget *openedWidget()
{
    QWidget *popup = QApplication::activePopupWidget();
    return popup != nullptr ? popup : QApplication::activeModalWidget();
}

} // namespace

Camera::Camera(const QString &folder) : m_folder(folder) {}

void Camera::shoot(const QString &name) const
{
    const QWidgetList windows = shownWindows();
    QRect area;
    for (const QWidget *window : windows) {
        area |= window->frameGeometry();
    }
    area.adjust(-edge, -edge, edge, edge);

    const qreal ratio = windows.first()->devicePixelRatio();
    QImage picture(area.size() * ratio, QImage::Format_RGB32);
    picture.setDevicePixelRatio(ratio);
    picture.fill(ground);
    QPainter painter(&picture);
    painter.translate(-area.topLeft());
    for (QWidget *window : windows) {
        painter.drawPixmap(window->pos(), window->grab());
        // The picture does not contain the system's frame, so we draw a line instead.
        if (!window->windowFlags().testFlag(Qt::FramelessWindowHint)) {
            painter.setPen(frameLine);
            painter.drawRect(window->geometry().adjusted(-1, -1, 0, 0));
        }
    }
    painter.end();
    if (!picture.save(m_folder.filePath(name + QStringLiteral(".png")))) {
        qFatal("%s could not be written", qUtf8Printable(name));
    }
}

void Camera::shootWhatOpens(const QString &name, const std::function<void()> &open,
                            const std::function<bool(QWidget *)> &passBy) const
{
    QTimer poll;
    const QWidget *seen = nullptr;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        QWidget *opened = openedWidget();
        if (opened == nullptr) {
            return;
        }
        if (seen != opened) { // by the next turn of the event loop the window is painted
            seen = opened;
            return;
        }
        seen = nullptr;
        QTimer::singleShot(0, opened, [this, opened, name, passBy] {
            if (passBy && passBy(opened)) {
                return;
            }
            shoot(name);
            QKeyEvent press(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
            QCoreApplication::sendEvent(opened, &press);
        });
    });
    poll.start(50);
    open();
}
