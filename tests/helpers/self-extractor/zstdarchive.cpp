// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/zstdarchive.h"

#include "tests/helpers/self-extractor/archivewriter.h"

#include "Bra.h"

namespace {

const QByteArray zstdMethod = QByteArray::fromHex("04f71101");
const QByteArray zstdProperties = QByteArray::fromHex("0105030000"); // version 1.5, level 3
const QByteArray x86Method = QByteArray::fromHex("03030103");

QByteArray filtered(QByteArray content)
{
    UInt32 state = Z7_BRANCH_CONV_ST_X86_STATE_INIT_VAL;
    z7_BranchConvSt_X86_Enc(reinterpret_cast<Byte *>(content.data()),
                            static_cast<SizeT>(content.size()), 0, &state);
    return content;
}

// Adds a solid block with these files to the plan.
void addBlock(forge::ArchivePlan &plan, const QList<QByteArray> &files, const ZstdPacking &packing)
{
    const QByteArray content = files.join();
    const auto size = static_cast<quint64>(content.size());
    forge::Folder folder{{forge::Coder{zstdMethod, zstdProperties}}};
    folder.unpackSizes = {size};
    if (packing.isFiltered) {
        folder.coders.prepend(forge::Coder{x86Method});
        folder.bonds = {{0, 1}};
        folder.unpackSizes = {size, size};
    }
    QByteArray packed = packing.hasSkippable ? zstdframes::skippableFrame("skip this") : "";
    packed += zstdframes::framesOf(packing.isFiltered ? filtered(content) : content,
                                   packing.frameSize, packing.frames);
    plan.packed += packed;
    plan.packSizes << static_cast<quint64>(packed.size());
    plan.folders << folder;
    plan.streamCounts << static_cast<quint64>(files.size());
    for (qsizetype i = 0; i < files.size(); ++i) {
        plan.checkSums << forge::checkSum(files[i]);
        if (i + 1 < files.size()) {
            plan.streamSizes << static_cast<quint64>(files[i].size());
        }
    }
    plan.packCount = plan.folderCount = static_cast<quint64>(plan.folders.size());
}

} // namespace

QByteArray packZstd(const Tree &tree, const ZstdPacking &packing)
{
    QList<forge::File> listed;
    for (auto item = tree.cbegin(); item != tree.cend(); ++item) {
        const bool isFolder = item.key().endsWith(u'/');
        listed << forge::File{isFolder ? item.key().chopped(1) : item.key(), *item, isFolder};
    }
    forge::ArchivePlan plan(QList<forge::File>{});
    plan.packSizes.clear();
    plan.folders.clear();
    plan.streamCounts.clear();
    plan.files = listed;
    plan.fileCount = static_cast<quint64>(listed.size());
    QList<QByteArray> files;
    qsizetype size = 0;
    for (const QByteArray &content : tree) {
        if (!content.isEmpty()) {
            files << content;
            size += content.size();
        }
        if (!files.isEmpty() && size >= packing.blockSize) {
            addBlock(plan, files, packing);
            files.clear();
            size = 0;
        }
    }
    if (!files.isEmpty()) {
        addBlock(plan, files, packing);
    }
    return forge::archiveOf(plan);
}
