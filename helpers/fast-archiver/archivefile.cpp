// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/archivefile.h"

#include "helpers/fast-archiver/machine.h"

#include <utility>

namespace fast {

ArchiveFile::ArchiveFile(pe::NativePath path, pe::File file)
    : m_path(std::move(path))
    , m_file(std::move(file))
{
}

ArchiveFile::ArchiveFile(ArchiveFile &&other) noexcept
    : m_path(std::exchange(other.m_path, {}))
    , m_file(std::move(other.m_file))
    , m_size(other.m_size)
{
}

Outcome<ArchiveFile> ArchiveFile::create(const pe::NativePath &path)
{
    auto file = pe::File::create(path);
    if (file.hasError()) {
        return failureOf(path, file.error());
    }
    return ArchiveFile(path, std::move(file.value()));
}

Outcome<Done> ArchiveFile::write(std::uint64_t offset, pe::ByteView bytes)
{
    if (m_path.empty()) {
        return Failure{ExitStatus::Interrupted, {}};
    }
    const auto written = m_file.writeAt(offset, bytes);
    return written.hasError() ? Outcome<Done>(failureOf(m_path, written.error())) : Done{};
}

Outcome<Done> ArchiveFile::append(pe::ByteView bytes)
{
    auto written = write(m_size, bytes);
    m_size += bytes.size();
    return written;
}

Outcome<Done> ArchiveFile::replaceStart(pe::ByteView bytes)
{
    return write(0, bytes);
}

void ArchiveFile::keep()
{
    m_file = pe::File();
    m_path.clear();
}

void ArchiveFile::abandon()
{
    if (!m_path.empty()) {
        m_file = pe::File(); // Windows does not remove a file that is open
        removeFile(m_path);
        m_path.clear();
    }
}

} // namespace fast
