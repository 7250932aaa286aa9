// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/iconpixels_win.h"

#include "platform/gdihandles_win.h"
#include "platform/iconmask.h"
#include "platform/nativepath.h"

#include <QByteArray>

#include <cstring>

#include <shellapi.h>

namespace {

// Prefers the small icon, which Windows shows in lists of files.
void loadFirstIcon(const wchar_t *path, IconHandle &icon)
{
    const UINT count = ExtractIconExW(path, 0, nullptr, nullptr, 0);
    if (count != 0) {
        ExtractIconExW(path, 0, nullptr, icon.out(), 1);
    }
    if (!icon.get()) {
        ExtractIconExW(path, 0, icon.out(), nullptr, 1);
    }
}

BITMAPINFO bottomUp32BitInfo(int width, int height)
{
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    return info;
}

// Draws `icon` into a DIB section and copies the bits unchanged: GetBitmapBits returns the top row
// first, and blue, green, red, alpha for each pixel, which is the layout of Format_ARGB32.
QImage drawnIcon(HICON icon, int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32);
    if (image.isNull()) {
        return {};
    }
    // These are released in reverse order: first the previous bitmap is selected again, then the
    // section is deleted, and last the contexts.
    const ScreenContext screen;
    const MemoryContext memory(screen.get());
    const BITMAPINFO info = bottomUp32BitInfo(width, height);
    void *bits = nullptr;
    const GdiObject section(
        CreateDIBSection(screen.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (!section) {
        return {};
    }
    const BitmapSelection selection(memory.get(), section.get());
    DrawIconEx(memory.get(), 0, 0, icon, width, height, 0, nullptr, DI_NORMAL);
    GetBitmapBits(static_cast<HBITMAP>(section.get()), width * height * 4, image.bits());
    return image;
}

// Returns the mask as an image, top row first. Null if `bitmap` does not have one bit for each
// pixel.
QImage maskImage(HBITMAP bitmap)
{
    BITMAP record = {};
    if (!GetObjectW(bitmap, sizeof record, &record) || record.bmBitsPixel != 1
        || record.bmPlanes != 1) {
        return {};
    }
    QImage mask(record.bmWidth, record.bmHeight, QImage::Format_Mono);
    const qsizetype rowSize = record.bmWidthBytes;
    QByteArray bits(rowSize * mask.height(), '\0');
    if (GetBitmapBits(bitmap, static_cast<LONG>(bits.size()), bits.data()) != bits.size()) {
        return {};
    }
    for (int y = 0; y < mask.height();
         ++y) { // a row of the bitmap is padded to 16 bits, a row of the image to 32 bits
        std::memcpy(mask.scanLine(y), bits.constData() + y * rowSize,
                    static_cast<size_t>(qMin(rowSize, mask.bytesPerLine())));
    }
    return mask;
}

} // namespace

ExtractedIcon iconPixelsOf(const QString &executable)
{
    IconHandle icon;
    loadFirstIcon(toNativePath(executable).c_str(), icon);
    if (!icon.get()) {
        return {ExtractedIcon::Outcome::NoIcon, {}};
    }
    ICONINFO info = {};
    if (!GetIconInfo(icon.get(), &info)) {
        return {ExtractedIcon::Outcome::NoIconInfo, {}};
    }
    const GdiObject mask(info.hbmMask);
    const GdiObject colour(info.hbmColor);
    if (!colour) {
        // A monochrome icon: the mask bitmap contains both halves, and there is no colour bitmap.
        return {ExtractedIcon::Outcome::NoIconInfo, {}};
    }
    BITMAP bitmap = {};
    GetObjectW(colour.get(), sizeof bitmap, &bitmap);
    QImage image = drawnIcon(icon.get(), bitmap.bmWidth, bitmap.bmHeight);
    useMaskWithoutOpacity(image, maskImage(info.hbmMask));
    return {ExtractedIcon::Outcome::Extracted, image};
}
