// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "svg/svgiconengine.h"

#include "svg/svgdrawing.h"

#include <QApplication>
#include <QFile>
#include <QPainter>
#include <QPixmapCache>
#include <QStyle>
#include <QStyleOption>

namespace {

QPixmap draw(const QString &fileName, const QSize &size)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        return QPixmap();
    }
    return QPixmap::fromImage(SvgDrawing(file.readAll()).render(size));
}

} // namespace

void SvgIconEngine::addFile(const QString &fileName, const QSize &, QIcon::Mode, QIcon::State state)
{
    m_files.insert(state, fileName);
}

QString SvgIconEngine::key() const
{
    return QStringLiteral("svg");
}

QIconEngine *SvgIconEngine::clone() const
{
    return new SvgIconEngine(*this);
}

bool SvgIconEngine::isNull()
{
    return m_files.isEmpty();
}

QPixmap SvgIconEngine::pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state)
{
    const QString file = m_files.value(state, m_files.value(QIcon::Off));
    const QString key = QStringLiteral("kestrelpack-svg %1 %2x%3 %4")
                            .arg(file)
                            .arg(size.width())
                            .arg(size.height())
                            .arg(mode);
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = draw(file, size);
        if (mode != QIcon::Normal && !pixmap.isNull()) {
            const QStyleOption option;
            pixmap = QApplication::style()->generatedIconPixmap(mode, pixmap, &option);
        }
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}

QPixmap SvgIconEngine::scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state,
                                    qreal scale)
{
    QPixmap scaled = pixmap(size, mode, state);
    scaled.setDevicePixelRatio(scale);
    return scaled;
}

QSize SvgIconEngine::actualSize(const QSize &size, QIcon::Mode, QIcon::State)
{
    return size;
}

void SvgIconEngine::paint(QPainter *painter, const QRect &rect, QIcon::Mode mode,
                          QIcon::State state)
{
    const qreal ratio = painter->device()->devicePixelRatio();
    painter->drawPixmap(rect, scaledPixmap(rect.size() * ratio, mode, state, ratio));
}
