// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/makearchive.h"

#include "helpers/fast-archiver/content.h"
#include "helpers/fast-archiver/folderscan.h"
#include "helpers/fast-archiver/headerpacking.h"
#include "helpers/fast-archiver/packing.h"

#include <algorithm>

#include "7zCrc.h"

namespace fast {

namespace {

// Packed bytes that wait for earlier blocks.
constexpr std::size_t waitingMemory = 256U << 20;

Outcome<Done> readContents(Source &source, const Progress &progress)
{
    pe::Bytes start(contentBytes);
    for (SourceFile &file : source.files) {
        if (progress.isStopped()) {
            return Failure{ExitStatus::Interrupted, {}};
        }
        if (file.size == 0 || file.isLink) {
            continue;
        }
        const pe::NativePath path = source.folder + file.place;
        const auto opened = pe::File::open(path, pe::File::Access::Read);
        if (opened.hasError()) {
            return failureOf(path, opened.error());
        }
        start.resize(std::min<std::uint64_t>(opened.value().size(), contentBytes));
        if (const auto read = opened.value().readAt(0, std::span(start)); read.hasError()) {
            return failureOf(path, read.error());
        }
        file.content = contentOf(start);
    }
    return Done{};
}

Outcome<Source> readSource(const pe::NativePath &folder, Progress &progress)
{
    auto files = scanFolder(folder, progress.stopFlag());
    if (files.hasFailed()) {
        return files.failure();
    }
    Source source{folder, std::move(files.value())};
    auto read = readContents(source, progress);
    if (read.hasFailed()) {
        return read.failure();
    }
    return source;
}

// Writes the header after the packed blocks, and then the archive's first bytes.
Outcome<Done> finishArchive(ArchiveFile &archive, const pe::Bytes &header)
{
    pe::Bytes last = header;
    if (const auto packed = packHeader(header)) {
        const std::uint64_t offset = archive.size() - startHeaderSize;
        auto written = archive.append(packed->bytes);
        if (written.hasFailed()) {
            return written;
        }
        last = headerOfPackedHeader(*packed, offset);
    }
    const std::uint64_t offset = archive.size() - startHeaderSize;
    auto written = archive.append(last);
    return written.hasFailed() ? written : archive.replaceStart(startHeader(offset, last));
}

Summary summaryOf(const std::vector<SourceFile> &files)
{
    Summary summary;
    for (const SourceFile &file : files) {
        ++(file.isFolder ? summary.folders : summary.files);
        summary.bytes += file.size;
    }
    return summary;
}

} // namespace

Outcome<Summary> makeArchive(const Request &request, Progress &progress)
{
    CrcGenerateTable();
    const auto source = readSource(request.folder, progress);
    if (source.hasFailed()) {
        return source.failure();
    }
    const std::vector<SourceFile> &files = source.value().files;
    Summary summary = summaryOf(files);
    progress.setTotal(summary.bytes);
    auto archive = ArchiveFile::create(request.archive);
    if (archive.hasFailed()) {
        return archive.failure();
    }
    auto done = archive.value().append(pe::Bytes(startHeaderSize));
    if (done.hasFailed()) {
        return done.failure();
    }
    const std::vector<SolidBlock> blocks = planBlocks(files, request.options);
    OrderedOutput output(archive.value(), waitingMemory);
    const auto packed = packBlocks(source.value(), blocks, request.options, output, progress);
    if (packed.hasFailed()) {
        return packed.failure();
    }
    done = finishArchive(archive.value(),
                         archiveHeader(files, blocks, packed.value(), request.options.level));
    if (done.hasFailed()) {
        return done.failure();
    }
    summary.archiveSize = archive.value().size();
    archive.value().keep();
    return summary;
}

} // namespace fast
