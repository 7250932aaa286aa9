// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QImage>
#include <QSizeF>

#include <memory>

struct NSVGimage;

// An SVG file, as far as nanosvg draws it: paths, basic shapes, flat fills and strokes, gradients. No
// text, no style sheets, no filters. Not for two threads at once.
class SvgDrawing
{
public:
    // A drawing that could not be read is empty.
    explicit SvgDrawing(const QByteArray &file);

    bool isEmpty() const { return size().isEmpty(); }

    // As the file says, in pixels at 96 per inch.
    QSizeF size() const;

    // The drawing as large as it fits into `pixels`, in the middle, on a transparent ground. Null when
    // the drawing is empty or there is not enough memory.
    QImage render(const QSize &pixels) const;

private:
    struct Deleter
    {
        void operator()(NSVGimage *image) const;
    };
    std::unique_ptr<NSVGimage, Deleter> m_image;
};
