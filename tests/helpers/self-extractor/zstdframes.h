// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <optional>

// Zstandard by its own library.
namespace zstdframes {

struct Options
{
    int level = 3;
    int windowLog = 0; // 0: by level and content
    bool hasContentSize = true;
    bool hasCheckSum = false;
    QByteArray dictionary = {};
};

// A frame with this content.
QByteArray frameOf(const QByteArray &content, const Options &options = {});
// The same content in several frames of at most `size` bytes.
QByteArray framesOf(const QByteArray &content, qsizetype size, const Options &options = {});
// A frame that decoders skip.
QByteArray skippableFrame(const QByteArray &content);

// The beginning of a frame: window byte, dictionary number and content size, as far as given.
QByteArray frameHeader(std::optional<quint8> window, std::optional<quint64> contentSize,
                       quint32 dictionary = 0);
// A block of a frame. Types: 0 raw, 1 one byte many times, 2 compressed, 3 is no type.
QByteArray block(int type, quint32 size, const QByteArray &bytes, bool isLast);

// What the library unpacks from these frames. Nothing if it refuses them.
std::optional<QByteArray> unpacked(const QByteArray &frames);

} // namespace zstdframes
