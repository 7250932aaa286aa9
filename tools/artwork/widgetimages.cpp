// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT
#include "tools/artwork/widgetimages.h"

#include <QMap>
#include <QPainter>
#include <QPolygonF>

#include <functional>

namespace {

constexpr int indicatorSize = 13; // in pixels, as the style sheets show it
constexpr int arrowSize = 12;
constexpr int calendarArrowSize = 16;
constexpr int pixelRatio = 2;

using DrawFunction = std::function<void(QPainter &, const Palette &)>;

struct WidgetImage
{
    int size; // of a side, in the style sheet's pixels
    DrawFunction draw;
};

enum class Mark { None, Tick, Bar, Dot };

QPen roundPen(const QColor &color, qreal width)
{
    return QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

void drawMark(QPainter &painter, Mark mark, const QColor &color)
{
    switch (mark) {
    case Mark::None:
        break;
    case Mark::Tick:
        painter.setPen(roundPen(color, 1.7));
        painter.setBrush(Qt::NoBrush);
        painter.drawPolyline(QPolygonF({{3.2, 6.7}, {5.5, 9.0}, {9.8, 4.3}}));
        break;
    case Mark::Bar:
        painter.setPen(Qt::NoPen);
        painter.setBrush(color);
        painter.drawRect(QRectF(3, 5.5, 7, 2));
        break;
    case Mark::Dot:
        painter.setPen(Qt::NoPen);
        painter.setBrush(color);
        painter.drawEllipse(QPointF(6.5, 6.5), 2.5, 2.5);
        break;
    }
}

void setIndicatorColors(QPainter &painter, const Palette &palette, bool filled, bool enabled)
{
    if (filled && enabled) {
        painter.setPen(QPen(palette.accent, 1));
        painter.setBrush(palette.accent);
    } else {
        painter.setPen(QPen(enabled ? palette.outline : palette.disabledOutline, 1));
        painter.setBrush(enabled ? palette.field : palette.disabledField);
    }
}

DrawFunction checkBox(Mark mark, bool enabled)
{
    return [=](QPainter &painter, const Palette &palette) {
        setIndicatorColors(painter, palette, mark != Mark::None, enabled);
        painter.drawRoundedRect(QRectF(0.5, 0.5, 12, 12), 2.2, 2.2);
        drawMark(painter, mark, enabled ? palette.mark : palette.disabledMark);
    };
}

DrawFunction radioButton(Mark mark, bool enabled)
{
    return [=](QPainter &painter, const Palette &palette) {
        setIndicatorColors(painter, palette, mark != Mark::None, enabled);
        painter.drawEllipse(QRectF(0.5, 0.5, 12, 12));
        drawMark(painter, mark, enabled ? palette.mark : palette.disabledMark);
    };
}

// Draws an open arrow that points down, turned clockwise by `degrees`, in a square of `size`
// pixels.
DrawFunction chevron(int size, int degrees)
{
    return [=](QPainter &painter, const Palette &palette) {
        const qreal half = size / 2.0;
        const qreal reach = size * 0.29;
        painter.translate(half, half);
        painter.rotate(degrees);
        painter.setPen(roundPen(palette.arrow, size * 0.125));
        painter.drawPolyline(
            QPolygonF({{-reach, -reach / 2}, {0, reach / 2}, {reach, -reach / 2}}));
    };
}

// Draws a filled triangle that points right, turned clockwise by `degrees`.
DrawFunction triangle(int degrees)
{
    return [=](QPainter &painter, const Palette &palette) {
        painter.translate(6, 6);
        painter.rotate(degrees);
        painter.setPen(roundPen(palette.arrow, 1));
        painter.setBrush(palette.arrow);
        painter.drawPolygon(QPolygonF({{-1.5, -3.0}, {2.0, 0}, {-1.5, 3.0}}));
    };
}

const QMap<QString, WidgetImage> &widgetImages()
{
    static const QMap<QString, WidgetImage> images = {
        {"add_bottom", {arrowSize, chevron(arrowSize, 0)}},
        {"add_left", {arrowSize, chevron(arrowSize, 90)}},
        {"add_top", {arrowSize, chevron(arrowSize, 180)}},
        {"add_right", {arrowSize, chevron(arrowSize, 270)}},
        {"branch_close", {arrowSize, triangle(0)}},
        {"branch_open", {arrowSize, triangle(90)}},
        {"calendar_prevmonth", {calendarArrowSize, chevron(calendarArrowSize, 90)}},
        {"calendar_nextmonth", {calendarArrowSize, chevron(calendarArrowSize, 270)}},
        {"checkbox_checked", {indicatorSize, checkBox(Mark::Tick, true)}},
        {"checkbox_checked_disable", {indicatorSize, checkBox(Mark::Tick, false)}},
        {"checkbox_parcial", {indicatorSize, checkBox(Mark::Bar, true)}},
        {"checkbox_parcial_disable", {indicatorSize, checkBox(Mark::Bar, false)}},
        {"checkbox_unchecked", {indicatorSize, checkBox(Mark::None, true)}},
        {"checkbox_unchecked_disable", {indicatorSize, checkBox(Mark::None, false)}},
        {"radiobutton_checked", {indicatorSize, radioButton(Mark::Dot, true)}},
        {"radiobutton_checked_disable", {indicatorSize, radioButton(Mark::Dot, false)}},
        {"radiobutton_unchecked", {indicatorSize, radioButton(Mark::None, true)}},
        {"radiobutton_unchecked_disable", {indicatorSize, radioButton(Mark::None, false)}},
    };
    return images;
}

} // namespace

Palette defaultPalette()
{
    return {.accent = "#00b688",
            .field = "#ffffff",
            .outline = "#b4bdc6",
            .mark = "#ffffff",
            .disabledField = "#f2f3f5",
            .disabledOutline = "#d9dde1",
            .disabledMark = "#b4bdc6",
            .arrow = "#5d6d7e"};
}

Palette darkPalette()
{
    return {.accent = "#00b688",
            .field = "#22272e",
            .outline = "#6b7682",
            .mark = "#ffffff",
            .disabledField = "#2b3138",
            .disabledOutline = "#434b55",
            .disabledMark = "#6b7682",
            .arrow = "#b4bdc6"};
}

QStringList widgetImageNames()
{
    return widgetImages().keys();
}

QImage drawWidgetImage(const QString &name, const Palette &palette)
{
    const auto found = widgetImages().constFind(name);
    if (found == widgetImages().constEnd()) {
        return {};
    }

    const int side = found->size * pixelRatio;
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(pixelRatio, pixelRatio);
    found->draw(painter, palette);
    return image;
}
