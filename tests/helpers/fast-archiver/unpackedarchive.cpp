// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/fast-archiver/unpackedarchive.h"

#include "helpers/self-extractor/archive/archive.h"
#include "tests/helpers/self-extractor/memorysource.h"

#include <QtEndian>

#include <algorithm>

#include <zstd.h>

#include "7zCrc.h"
#include "Bra.h"

namespace {

constexpr std::uint32_t x86Filter = 0x03030103;
constexpr std::uint32_t zstandard = 0x04f71101;

QString methodName(std::uint32_t id)
{
    return id == zstandard ? QStringLiteral("Zstandard")
        : id == x86Filter  ? QStringLiteral("BCJ")
                           : QString::number(id, 16);
}

QString pathOf(const CSzArEx &tables, std::uint32_t index)
{
    QString path(static_cast<qsizetype>(SzArEx_GetFileNameUtf16(&tables, index, nullptr)), u' ');
    SzArEx_GetFileNameUtf16(&tables, index, reinterpret_cast<UInt16 *>(path.data()));
    return path.chopped(1);
}

ArchivedEntry entryOf(const CSzArEx &tables, std::uint32_t index)
{
    ArchivedEntry entry;
    entry.path = pathOf(tables, index);
    entry.isFolder = SzArEx_IsDir(&tables, index);
    entry.size = SzArEx_GetFileSize(&tables, index);
    if (SzBitWithVals_Check(&tables.MTime, index)) {
        const CNtfsFileTime &time = tables.MTime.Vals[index];
        entry.modified = (static_cast<quint64>(time.High) << 32) | time.Low;
    }
    if (SzBitWithVals_Check(&tables.Attribs, index)) {
        entry.attributes = tables.Attribs.Vals[index];
    }
    if (SzBitWithVals_Check(&tables.CRCs, index)) {
        entry.checkSum = tables.CRCs.Vals[index];
    }
    return entry;
}

QString methodsOf(const sfx::CoderGraph &graph)
{
    QStringList names;
    for (unsigned i = 0; i < graph.wiring.NumCoders; ++i) {
        names << methodName(static_cast<std::uint32_t>(graph.wiring.Coders[i].MethodID));
    }
    return names.join(' ');
}

// Returns nothing if the block is not one frame of its size, or has coders that the archiver does
// not use.
std::optional<QByteArray> unpackBlock(const sfx::CoderGraph &graph, const QByteArray &archive)
{
    const std::uint64_t begin = graph.packBase + graph.packPositions[0];
    const std::uint64_t end = graph.packBase + graph.packPositions[1];
    const auto size = static_cast<qsizetype>(graph.unpackSizes[graph.wiring.UnpackStream]);
    const char *const packed = archive.constData() + begin;
    const auto packedSize = static_cast<std::size_t>(end - begin);
    if (ZSTD_getFrameContentSize(packed, packedSize) != static_cast<unsigned long long>(size)
        || ZSTD_findFrameCompressedSize(packed, packedSize) != packedSize) {
        return std::nullopt;
    }
    QByteArray unpacked(size, Qt::Uninitialized);
    const std::size_t got
        = ZSTD_decompress(unpacked.data(), static_cast<std::size_t>(size), packed, packedSize);
    if (got != static_cast<std::size_t>(size)) {
        return std::nullopt;
    }
    const QString methods = methodsOf(graph);
    if (methods == "BCJ Zstandard") {
        UInt32 state = Z7_BRANCH_CONV_ST_X86_STATE_INIT_VAL;
        z7_BranchConvSt_X86_Dec(reinterpret_cast<Byte *>(unpacked.data()), static_cast<SizeT>(size),
                                0, &state);
    } else if (methods != "Zstandard") {
        return std::nullopt;
    }
    return unpacked;
}

bool unpackFiles(const CSzArEx &tables, std::uint32_t block, const QByteArray &content,
                 UnpackedArchive &result)
{
    qsizetype offset = 0;
    for (std::uint32_t i = tables.FolderToFile[block]; i < tables.FolderToFile[block + 1]; ++i) {
        ArchivedEntry &entry = result.entries[static_cast<qsizetype>(i)];
        entry.content = content.mid(offset, static_cast<qsizetype>(entry.size));
        offset += entry.content.size();
        if (CrcCalc(entry.content.constData(), static_cast<std::size_t>(entry.content.size()))
            != (entry.size == 0 ? 0 : entry.checkSum)) {
            return false;
        }
    }
    return offset == content.size();
}

} // namespace

QString ArchivedEntry::text() const
{
    return QStringLiteral("%1%2 %3 bytes, time %4, attributes %5, check sum %6")
        .arg(path, isFolder ? "/" : "")
        .arg(size)
        .arg(modified)
        .arg(attributes, 8, 16, QChar('0'))
        .arg(checkSum, 8, 16, QChar('0'));
}

std::optional<UnpackedArchive> readArchive(const QByteArray &bytes, Unpacking unpacking)
{
    MemorySource source(bytes);
    sfx::Archive archive(source);
    if (archive.open(0) != sfx::Status::Ok) {
        return std::nullopt;
    }
    const CSzArEx &tables = archive.tables();
    UnpackedArchive result;
    result.headerSize = bytes.size() - 32
        - static_cast<qsizetype>(tables.db.NumPackStreams == 0
                                     ? 0
                                     : tables.db.PackPositions[tables.db.NumPackStreams]);
    for (std::uint32_t i = 0; i < tables.NumFiles; ++i) {
        result.entries << entryOf(tables, i);
    }
    for (std::uint32_t i = 0; i < tables.db.NumFolders; ++i) {
        sfx::CoderGraph graph;
        if (archive.coderGraph(i, graph) != sfx::Status::Ok) {
            return std::nullopt;
        }
        result.blocks << methodsOf(graph) + ' '
                + QString::number(graph.unpackSizes[graph.wiring.UnpackStream]);
        if (unpacking == Unpacking::Everything) {
            const auto content = unpackBlock(graph, bytes);
            if (!content || !unpackFiles(tables, i, *content, result)) {
                return std::nullopt;
            }
        }
    }
    return result;
}

QStringList sortedLines(const UnpackedArchive &archive)
{
    QStringList lines;
    for (const ArchivedEntry &entry : archive.entries) {
        lines << entry.text();
    }
    lines.sort();
    return lines;
}
