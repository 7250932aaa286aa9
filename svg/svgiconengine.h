// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QIconEngine>
#include <QString>

// An icon with one SVG file for each state, drawn at the requested size. The style derives the
// other modes, such as disabled, from the normal one.
class SvgIconEngine : public QIconEngine
{
public:
    void addFile(const QString &fileName, const QSize &size, QIcon::Mode mode,
                 QIcon::State state) override;
    QString key() const override;
    QIconEngine *clone() const override;
    bool isNull() override;

    // `size` is in device pixels.
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state,
                         qreal scale) override;
    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override;

private:
    QHash<QIcon::State, QString> m_files;
};
