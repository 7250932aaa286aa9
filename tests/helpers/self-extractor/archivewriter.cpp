// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/archivewriter.h"

#include "7zCrc.h"

#include <QtEndian>

namespace forge {

namespace {

enum Id {
    End = 0,
    Header = 1,
    MainStreams = 4,
    FilesInfo = 5,
    PackInfo = 6,
    UnpackInfo = 7,
    SubStreams = 8,
    Size = 9,
    CheckSum = 10,
    FolderInfo = 11,
    UnpackSize = 12,
    StreamCount = 13,
    EmptyStream = 14,
    EmptyFile = 15,
    Anti = 16,
    Names = 17,
    Attributes = 21,
    EncodedHeader = 23
};

template <typename Integer>
QByteArray fixed(Integer value)
{
    QByteArray bytes(sizeof value, Qt::Uninitialized);
    qToLittleEndian(value, bytes.data());
    return bytes;
}

QByteArray id(int value)
{
    return QByteArray(1, static_cast<char>(value));
}

QByteArray numbers(const QList<quint64> &values)
{
    QByteArray bytes;
    for (const quint64 value : values) {
        bytes += number(value);
    }
    return bytes;
}

QByteArray bits(const QList<bool> &values)
{
    QByteArray bytes((values.size() + 7) / 8, '\0');
    for (qsizetype i = 0; i < values.size(); ++i) {
        if (values[i]) {
            bytes[i / 8] = static_cast<char>(bytes[i / 8] | (0x80 >> (i % 8)));
        }
    }
    return bytes;
}

QByteArray coderBytes(const Coder &coder)
{
    const bool isSimple = coder.inputs == 1 && coder.outputs == 1;
    QByteArray bytes = id(static_cast<int>(coder.method.size()) | (isSimple ? 0 : 0x10)
                          | (coder.properties.isEmpty() ? 0 : 0x20))
        + coder.method;
    if (!isSimple) {
        bytes += number(coder.inputs) + number(coder.outputs);
    }
    if (!coder.properties.isEmpty()) {
        bytes += number(static_cast<quint64>(coder.properties.size())) + coder.properties;
    }
    return bytes;
}

QByteArray folderBytes(const Folder &folder)
{
    QByteArray bytes = number(static_cast<quint64>(folder.coders.size()));
    for (const Coder &coder : folder.coders) {
        bytes += coderBytes(coder);
    }
    for (const auto &[input, output] : folder.bonds) {
        bytes += number(input) + number(output);
    }
    return bytes + numbers(folder.packedInputs);
}

QByteArray packInfo(quint64 offset, quint64 count, const QList<quint64> &sizes)
{
    return id(PackInfo) + number(offset) + number(count) + id(Size) + numbers(sizes) + id(End);
}

QByteArray unpackInfo(quint64 count, const QList<Folder> &folders, const QByteArray &sums)
{
    QByteArray bytes = id(UnpackInfo) + id(FolderInfo) + number(count) + id(0);
    QByteArray sizes;
    for (const Folder &folder : folders) {
        bytes += folderBytes(folder);
        sizes += numbers(folder.unpackSizes);
    }
    return bytes + id(UnpackSize) + sizes + sums + id(End);
}

QByteArray sumsBytes(const QList<quint32> &sums)
{
    QByteArray bytes = id(CheckSum) + id(1);
    for (const quint32 sum : sums) {
        bytes += fixed(sum);
    }
    return bytes;
}

QByteArray streamsOf(const ArchivePlan &plan)
{
    QByteArray subStreams = id(SubStreams) + id(StreamCount) + numbers(plan.streamCounts);
    if (!plan.streamSizes.isEmpty()) {
        subStreams += id(Size) + numbers(plan.streamSizes);
    }
    subStreams += sumsBytes(plan.checkSums) + id(End);
    return packInfo(plan.packOffset, plan.packCount, plan.packSizes)
        + unpackInfo(plan.folderCount, plan.folders, {}) + subStreams + id(End);
}

QByteArray namesOf(const QList<File> &files)
{
    QByteArray names(1, '\0'); // 0: the names follow here, not in a separate stream
    for (const File &file : files) {
        names.append(reinterpret_cast<const char *>(file.name.utf16()), 2 * file.name.size());
        names.append(2, '\0');
    }
    return names;
}

QByteArray filesOf(const ArchivePlan &plan)
{
    QList<bool> empty;
    QList<bool> emptyFile;
    QList<bool> anti;
    QList<bool> hasAttributes;
    QByteArray attributes;
    for (const File &file : plan.files) {
        empty << file.content.isEmpty();
        if (file.content.isEmpty()) {
            emptyFile << !file.isFolder;
            anti << file.isAnti;
        }
        hasAttributes << file.attributes.has_value();
        attributes += file.attributes ? fixed(*file.attributes) : QByteArray();
    }
    QByteArray bytes = id(FilesInfo) + number(plan.fileCount);
    if (empty.contains(true)) {
        bytes += property(EmptyStream, bits(empty)) + property(EmptyFile, bits(emptyFile));
    }
    if (anti.contains(true)) {
        bytes += property(Anti, bits(anti));
    }
    bytes += plan.hasNames ? property(Names, namesOf(plan.files)) : QByteArray();
    if (!attributes.isEmpty()) {
        bytes += property(Attributes, id(0) + bits(hasAttributes) + id(0) + attributes);
    }
    return bytes + plan.furtherProperties + id(End);
}

} // namespace

ArchivePlan::ArchivePlan(const QList<File> &listed) : files(listed)
{
    for (const File &file : listed) {
        if (!file.content.isEmpty()) {
            packed += file.content;
            streamSizes << static_cast<quint64>(file.content.size());
            checkSums << checkSum(file.content);
        }
    }
    const auto size = static_cast<quint64>(packed.size());
    packSizes << size;
    streamCounts << static_cast<quint64>(streamSizes.size());
    folders << Folder{.unpackSizes = {size}};
    fileCount = static_cast<quint64>(listed.size());
    if (!streamSizes.isEmpty()) {
        streamSizes.removeLast();
    }
}

QByteArray number(quint64 value)
{
    int extra = 0;
    while (extra < 8 && value >> (7 * (extra + 1)) != 0) {
        ++extra;
    }
    const int ones = 0xff00 >> extra;
    const quint64 high = extra < 8 ? value >> (8 * extra) : 0;
    QByteArray bytes(1, static_cast<char>(ones | static_cast<int>(high)));
    for (int i = 0; i < extra; ++i) {
        bytes += static_cast<char>(value >> (8 * i));
    }
    return bytes;
}

QByteArray property(int kind, const QByteArray &content)
{
    return id(kind) + number(static_cast<quint64>(content.size())) + content;
}

QByteArray headerOf(const ArchivePlan &plan)
{
    const bool hasStreams = plan.folderCount != 0;
    return id(Header) + (hasStreams ? id(MainStreams) + streamsOf(plan) : QByteArray())
        + filesOf(plan) + id(End);
}

QByteArray archiveOf(const QByteArray &packed, const QByteArray &header)
{
    return startHeader(static_cast<quint64>(packed.size()), static_cast<quint64>(header.size()),
                       checkSum(header), packed + header);
}

QByteArray archiveOf(const ArchivePlan &plan)
{
    return archiveOf(plan.packed, headerOf(plan));
}

QByteArray startHeader(quint64 headerOffset, quint64 headerSize, quint32 headerSum,
                       const QByteArray &rest)
{
    const QByteArray fields = fixed(headerOffset) + fixed(headerSize) + fixed(headerSum);
    return QByteArray::fromHex("377abcaf271c0004") + fixed(checkSum(fields)) + fields + rest;
}

QByteArray encodedHeader(const Folder &folder, quint64 offset, quint64 packSize, quint32 sum)
{
    return id(EncodedHeader) + packInfo(offset, 1, {packSize})
        + unpackInfo(1, {folder}, sumsBytes({sum})) + id(End);
}

quint32 checkSum(const QByteArray &bytes)
{
    CrcGenerateTable();
    return CrcCalc(bytes.constData(), static_cast<size_t>(bytes.size()));
}

} // namespace forge
