// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// drawartwork ROOT: draws these files in the source tree ROOT: resources/qss/default/*.png,
// resources/qss/dark/*.png and, from the logo drawings, resources/icons/logo.ico.

#include "tools/artwork/icofile.h"
#include "tools/artwork/widgetimages.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImageWriter>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

namespace {

bool fail(const QString &path)
{
    std::fprintf(stderr, "drawartwork: cannot draw %s\n", qPrintable(path));
    return false;
}

// Returns the same picture with a colour table and one byte for each pixel, which makes a smaller
// file. A picture of more than 256 colours is returned unchanged.
QImage withColorTable(const QImage &image)
{
    QList<QRgb> colors;
    QImage table(image.size(), QImage::Format_Indexed8);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb color = image.pixel(x, y);
            if (!colors.contains(color)) {
                colors += color;
            }
            if (colors.size() > 256) {
                return image;
            }
            table.scanLine(y)[x] = static_cast<uchar>(colors.indexOf(color));
        }
    }
    table.setColorTable(colors);
    return table;
}

bool drawWidgetImages(const QString &folder, const Palette &palette)
{
    for (const QString &name : widgetImageNames()) {
        const QString path = folder + '/' + name + ".png";
        QImageWriter writer(path, "png");
        writer.setCompression(100); // the smallest file
        if (!writer.write(withColorTable(drawWidgetImage(name, palette)))) {
            return fail(path);
        }
    }
    return true;
}

QImage render(const QString &drawing, int side)
{
    QSvgRenderer renderer(drawing);
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    if (!renderer.isValid()) {
        return {};
    }
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter);
    return image;
}

// The small images are drawn from a separate drawing with fewer and larger shapes.
bool drawProgramIcon(const QString &path, const QString &logo, const QString &smallLogo)
{
    constexpr int largestSmall = 24;
    QList<QImage> images;
    for (const int side : {16, 20, 24, 32, 40, 48, 64, 72, 256}) {
        images += render(side <= largestSmall ? smallLogo : logo, side);
        if (images.last().isNull()) {
            return fail(path);
        }
    }
    QFile file(path);
    const QByteArray data = makeIcoFile(images);
    return (file.open(QIODevice::WriteOnly) && file.write(data) == data.size()) || fail(path);
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: drawartwork ROOT\n", stderr);
        return 2;
    }
    const QString root = QDir::cleanPath(QFile::decodeName(argv[1]));
    const QString icons = root + "/resources/icons/";
    const bool drawn = drawWidgetImages(root + "/resources/qss/default", defaultPalette())
        && drawWidgetImages(root + "/resources/qss/dark", darkPalette())
        && drawProgramIcon(icons + "logo.ico", icons + "logo.svg",
                           root + "/tools/artwork/logo-small.svg");
    return drawn ? 0 : 1;
}
