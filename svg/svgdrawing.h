// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QImage>
#include <QSizeF>

#include <memory>

struct NSVGimage;

// An SVG file, drawn by nanosvg: paths, basic shapes, flat fills and strokes, gradients. No text,
// no style sheets, no filters. Two threads must not use one object at the same time.
class SvgDrawing
{
public:
    // `file` is the content of the file. If it cannot be read, the drawing is empty.
    explicit SvgDrawing(const QByteArray &file);

    bool isEmpty() const { return size().isEmpty(); }

    // The size from the file, in pixels at 96 pixels per inch.
    QSizeF size() const;

    // Returns the drawing, scaled to fit into `pixels` and centred, on a transparent background.
    // Returns a null image if the drawing is empty or memory runs out.
    QImage render(const QSize &pixels) const;

private:
    struct Deleter
    {
        void operator()(NSVGimage *image) const;
    };
    std::unique_ptr<NSVGimage, Deleter> m_image;
};
