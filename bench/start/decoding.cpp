// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "bench/start/decoding.h"

#include "helpers/self-extractor/archive/contents.h"
#include "helpers/self-extractor/start/startplan.h"
#include "helpers/self-extractor/unpacking/unpacker.h"

#include <cinttypes>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class FileSource final : public sfx::ByteSource
{
public:
    explicit FileSource(const char *path) : m_file(open(path, O_RDONLY | O_CLOEXEC))
    {
        struct stat information = {};
        if (m_file >= 0 && fstat(m_file, &information) == 0) {
            m_size = static_cast<std::uint64_t>(information.st_size);
        }
    }
    FileSource(const FileSource &) = delete;
    FileSource &operator=(const FileSource &) = delete;
    ~FileSource()
    {
        if (m_file >= 0) {
            close(m_file);
        }
    }

    bool readAt(std::uint64_t offset, void *data, std::size_t size) override
    {
        auto *place = static_cast<char *>(data);
        while (size > 0) {
            const ssize_t got = pread(m_file, place, size, static_cast<off_t>(offset));
            if (got <= 0) {
                return false;
            }
            place += got;
            offset += static_cast<std::uint64_t>(got);
            size -= static_cast<std::size_t>(got);
        }
        return true;
    }
    std::uint64_t size() const override { return m_size; }

private:
    int m_file;
    std::uint64_t m_size = 0;
};

class NoSink final : public sfx::UnpackSink
{
public:
    sfx::Status begin(std::uint64_t, std::uint32_t) override { return sfx::Status::Ok; }
    sfx::Status makeFolder(const sfx::Entry &) override { return sfx::Status::Ok; }
    sfx::Status beginFile(const sfx::Entry &) override { return sfx::Status::Ok; }
    sfx::Status write(const std::uint8_t *, std::size_t) override { return sfx::Status::Ok; }
    sfx::Status endFile(const sfx::Entry &) override { return sfx::Status::Ok; }
    sfx::Status finishFolder(const sfx::Entry &) override { return sfx::Status::Ok; }
};

// The table in Windows is larger, but for the names in the payloads the result is the same.
void upperCase(char16_t *text, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i) {
        if (text[i] >= u'a' && text[i] <= u'z') {
            text[i] = static_cast<char16_t>(text[i] - (u'a' - u'A'));
        }
    }
}

bool succeeded(sfx::Status status, const char *path)
{
    if (status != sfx::Status::Ok) {
        std::fprintf(stderr, "benchstart: %s: status %d\n", path, static_cast<int>(status));
    }
    return status == sfx::Status::Ok;
}

} // namespace

bool printArchiveOffset(const char *path)
{
    FileSource source(path);
    sfx::StartPlan plan;
    std::uint64_t offset = 0;
    if (!succeeded(sfx::readStartPlan(source, plan, offset), path)) {
        return false;
    }
    std::printf("%" PRIu64 "\n", offset);
    return true;
}

bool decodeIntoNothing(const char *path)
{
    FileSource source(path);
    sfx::StartPlan plan;
    sfx::Archive archive(source);
    NoSink sink;
    std::uint64_t offset = 0;
    std::uint64_t totalBytes = 0;
    sfx::Status status = sfx::readStartPlan(source, plan, offset);
    if (status == sfx::Status::Ok) {
        status = archive.open(offset);
    }
    if (status == sfx::Status::Ok) {
        status = sfx::checkContents(archive, plan.program(), upperCase, totalBytes);
    }
    if (status == sfx::Status::Ok) {
        status = sfx::unpack(archive, sink, totalBytes);
    }
    return succeeded(status, path);
}
