// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/core/unpacker.h"

#include "helpers/self-extractor/core/folderchain.h"

#include "7zCrc.h"

namespace sfx {

namespace {

constexpr std::size_t bufferSize = 1024 * 1024;
constexpr std::uint32_t noFolder = 0xffffffff;

/// Goes through the files of an archive, and through the packed folders under them in step.
class Unpacker
{
public:
    Unpacker(Archive &archive, UnpackSink &sink) : m_archive(archive), m_sink(sink) {}

    Status run();

private:
    Status unpackEntry(std::uint32_t index);
    Status unpackFile(std::uint32_t index, const Entry &file);
    Status enterFolder(std::uint32_t index);
    Status finishFolders();

    Archive &m_archive;
    UnpackSink &m_sink;
    Owned<Stream> m_chain;
    std::uint32_t m_folder = noFolder;
    Array<std::uint8_t> m_buffer;
};

Status Unpacker::run()
{
    if (!m_buffer.allocate(bufferSize)) {
        return Status::NoMemory;
    }
    for (std::uint32_t i = 0; i < m_archive.entryCount(); ++i) {
        const Status status = unpackEntry(i);
        if (status != Status::Ok) {
            return status;
        }
    }
    m_chain = Owned<Stream>();
    return finishFolders();
}

Status Unpacker::unpackEntry(std::uint32_t index)
{
    Entry entry;
    Status status = m_archive.entry(index, entry);
    if (status != Status::Ok) {
        return status;
    }
    if (entry.isFolder) {
        return m_sink.makeFolder(entry);
    }
    status = m_sink.beginFile(entry);
    if (status == Status::Ok && entry.size != 0) {
        status = unpackFile(index, entry);
    }
    return status == Status::Ok ? m_sink.endFile(entry) : status;
}

// Opens the packed folder that holds the file. Its files follow each other without a gap, so a
// folder is entered at its first file and then only read on.
Status Unpacker::enterFolder(std::uint32_t index)
{
    const CSzArEx &tables = m_archive.tables();
    const std::uint32_t folder = tables.FileToFolder[index];
    if (folder == m_folder) {
        return Status::Ok;
    }
    m_chain = Owned<Stream>(); // the old window goes before the new one comes
    m_folder = folder;
    return openFolder(tables.db, folder, m_archive.source(), m_archive.packBase(), m_chain);
}

Status Unpacker::unpackFile(std::uint32_t index, const Entry &file)
{
    const CSzArEx &tables = m_archive.tables();
    if (tables.FileToFolder[index] == noFolder || !SzBitWithVals_Check(&tables.CRCs, index)) {
        return Status::Damaged;
    }
    Status status = enterFolder(index);
    std::uint32_t crc = CRC_INIT_VAL;
    for (std::uint64_t left = file.size; status == Status::Ok && left != 0;) {
        const std::size_t wanted
            = left < m_buffer.size() ? static_cast<std::size_t>(left) : m_buffer.size();
        std::size_t got = 0;
        status = readFully(*m_chain, m_buffer.data(), wanted, got);
        if (status == Status::Ok && got != wanted) {
            status = Status::Damaged;
        }
        if (status == Status::Ok) {
            crc = CrcUpdate(crc, m_buffer.data(), got);
            status = m_sink.write(m_buffer.data(), got);
            left -= got;
        }
    }
    if (status == Status::Ok && CRC_GET_DIGEST(crc) != tables.CRCs.Vals[index]) {
        status = Status::Damaged;
    }
    return status;
}

Status Unpacker::finishFolders()
{
    for (std::uint32_t i = m_archive.entryCount(); i-- > 0;) {
        Entry entry;
        Status status = m_archive.entry(i, entry);
        if (status == Status::Ok && entry.isFolder) {
            status = m_sink.finishFolder(entry);
        }
        if (status != Status::Ok) {
            return status;
        }
    }
    return Status::Ok;
}

} // namespace

Status unpack(Archive &archive, UnpackSink &sink, std::uint64_t totalBytes)
{
    const Status status = sink.begin(totalBytes, archive.entryCount());
    return status == Status::Ok ? Unpacker(archive, sink).run() : status;
}

} // namespace sfx
