// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/zstdframes.h"

#include <QtEndian>

#include <memory>
#include <zstd.h>

namespace zstdframes {

namespace {

constexpr quint32 frameMagic = 0xfd2fb528;
constexpr quint32 skippableMagic = 0x184d2a50;

template <typename Integer>
QByteArray fixed(Integer value)
{
    QByteArray bytes(sizeof value, Qt::Uninitialized);
    qToLittleEndian(value, bytes.data());
    return bytes;
}

std::size_t sizeOf(const QByteArray &bytes)
{
    return static_cast<std::size_t>(bytes.size());
}

void check(std::size_t result)
{
    if (ZSTD_isError(result) != 0) {
        qFatal("%s", ZSTD_getErrorName(result));
    }
}

} // namespace

QByteArray frameOf(const QByteArray &content, const Options &options)
{
    const std::unique_ptr<ZSTD_CCtx, decltype(&ZSTD_freeCCtx)> context(ZSTD_createCCtx(),
                                                                       ZSTD_freeCCtx);
    const auto set = [&context](ZSTD_cParameter parameter, int value) {
        check(ZSTD_CCtx_setParameter(context.get(), parameter, value));
    };
    set(ZSTD_c_compressionLevel, options.level);
    set(ZSTD_c_windowLog, options.windowLog);
    set(ZSTD_c_contentSizeFlag, options.hasContentSize ? 1 : 0);
    set(ZSTD_c_checksumFlag, options.hasCheckSum ? 1 : 0);
    check(ZSTD_CCtx_loadDictionary(context.get(), options.dictionary.constData(),
                                   sizeOf(options.dictionary)));
    QByteArray packed(static_cast<qsizetype>(ZSTD_compressBound(sizeOf(content))), '\0');
    ZSTD_inBuffer input{content.constData(), sizeOf(content), 0};
    ZSTD_outBuffer output{packed.data(), sizeOf(packed), 0};
    // In two steps, so that the library does not know the size when it writes the header.
    if (options.hasContentSize) {
        check(ZSTD_CCtx_setPledgedSrcSize(context.get(), sizeOf(content)));
    } else {
        check(ZSTD_compressStream2(context.get(), &output, &input, ZSTD_e_continue));
    }
    check(ZSTD_compressStream2(context.get(), &output, &input, ZSTD_e_end));
    packed.truncate(static_cast<qsizetype>(output.pos));
    return packed;
}

QByteArray framesOf(const QByteArray &content, qsizetype size, const Options &options)
{
    QByteArray frames;
    for (qsizetype at = 0; at < content.size(); at += size) {
        frames += frameOf(content.mid(at, size), options);
    }
    return frames;
}

QByteArray skippableFrame(const QByteArray &content)
{
    return fixed(skippableMagic) + fixed(static_cast<quint32>(content.size())) + content;
}

QByteArray frameHeader(std::optional<quint8> window, std::optional<quint64> contentSize,
                       quint32 dictionary)
{
    const int contentFlag = contentSize ? 0xc0 : 0; // the content size has eight bytes
    const auto descriptor
        = static_cast<quint8>(contentFlag | (window ? 0 : 0x20) | (dictionary != 0 ? 3 : 0));
    return fixed(frameMagic) + fixed(descriptor) + (window ? fixed(*window) : QByteArray())
        + (dictionary != 0 ? fixed(dictionary) : QByteArray())
        + (contentSize ? fixed(*contentSize) : QByteArray());
}

QByteArray block(int type, quint32 size, const QByteArray &bytes, bool isLast)
{
    return fixed((isLast ? 1u : 0u) | static_cast<quint32>(type) << 1 | size << 3).left(3) + bytes;
}

std::optional<QByteArray> unpacked(const QByteArray &frames)
{
    const std::unique_ptr<ZSTD_DCtx, decltype(&ZSTD_freeDCtx)> context(ZSTD_createDCtx(),
                                                                       ZSTD_freeDCtx);
    QByteArray content;
    QByteArray piece(static_cast<qsizetype>(ZSTD_DStreamOutSize()), '\0');
    ZSTD_inBuffer input{frames.constData(), sizeOf(frames), 0};
    for (;;) {
        ZSTD_outBuffer output{piece.data(), sizeOf(piece), 0};
        const std::size_t wanted = ZSTD_decompressStream(context.get(), &output, &input);
        if (ZSTD_isError(wanted) != 0) {
            return std::nullopt;
        }
        content.append(piece.constData(), static_cast<qsizetype>(output.pos));
        if (input.pos == input.size && wanted == 0) {
            return content;
        }
        if (input.pos == input.size && output.pos < output.size) {
            return std::nullopt; // the end is missing
        }
    }
}

} // namespace zstdframes
