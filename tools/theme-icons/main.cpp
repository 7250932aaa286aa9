// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// theme-icons ICON FOLDER SIDE...: writes the images of an .ico file with these sides into the folder,
// each as SIDE.png.

#include <QDir>
#include <QImageReader>

#include <cstdio>

namespace {

QImage imageOfSide(const QString &icon, int side)
{
    QImageReader reader(icon, "ICO");
    for (int number = 0; number < reader.imageCount(); ++number) {
        const QImage image = reader.jumpToImage(number) ? reader.read() : QImage();
        if (image.size() == QSize(side, side)) {
            return image;
        }
    }
    return {};
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc < 4) {
        std::fputs("usage: theme-icons ICON FOLDER SIDE...\n", stderr);
        return 2;
    }
    const QDir folder(QFile::decodeName(argv[2]));
    for (int i = 3; i < argc; ++i) {
        const QImage image = imageOfSide(QFile::decodeName(argv[1]), QByteArray(argv[i]).toInt());
        const QString path = folder.filePath(QFile::decodeName(argv[i]) + ".png");
        if (!folder.mkpath(".") || !image.save(path, "PNG")) {
            std::fprintf(stderr, "theme-icons: cannot write %s\n", qPrintable(path));
            return 1;
        }
    }
    return 0;
}
