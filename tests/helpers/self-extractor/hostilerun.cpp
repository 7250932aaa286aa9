// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/hostilerun.h"

#include "helpers/self-extractor/archive/contents.h"
#include "tests/helpers/self-extractor/countedmemory.h"
#include "tests/helpers/self-extractor/sfxtest.h"

using namespace sfx;

namespace {

constexpr std::uint64_t diskSize = 64u << 20;

class Disk final : public UnpackSink
{
public:
    explicit Disk(HostileRun &run) : m_run(run) {}

    Status begin(std::uint64_t, std::uint32_t) override
    {
        m_run.hasBegun = true;
        return Status::Ok;
    }
    Status makeFolder(const Entry &) override { return Status::Ok; }
    Status beginFile(const Entry &) override { return Status::Ok; }
    Status write(const std::uint8_t *, std::size_t size) override
    {
        m_run.written += size;
        return m_run.written > diskSize ? Status::DiskFull : Status::Ok;
    }
    Status endFile(const Entry &file) override
    {
        m_run.files << QString::fromUtf16(file.path, static_cast<qsizetype>(file.pathSize));
        return Status::Ok;
    }
    Status finishFolder(const Entry &) override { return Status::Ok; }

private:
    HostileRun &m_run;
};

Status unpackTo(Disk &disk, ByteSource &source)
{
    Archive archive(source);
    Text program;
    std::uint64_t totalBytes = 0;
    Status status = program.assign(u"main.exe", 8) ? archive.open(0) : Status::NoMemory;
    if (status == Status::Ok) {
        status = checkContents(archive, program, upperCase, totalBytes);
    }
    return status == Status::Ok ? unpack(archive, disk, totalBytes) : status;
}

} // namespace

HostileRun runHostile(const QByteArray &archive)
{
    HostileRun run;
    MemorySource source(archive);
    Disk disk(run);
    const std::size_t before = countedmemory::inUse();
    countedmemory::reset();
    run.status = unpackTo(disk, source);
    run.peakMemory = countedmemory::peak() - before;
    run.files.sort();
    return run;
}

forge::File programFile()
{
    return {QStringLiteral("main.exe"), "MZ, more or less"};
}

forge::ArchivePlan planWith(const QList<forge::File> &files)
{
    return forge::ArchivePlan(QList<forge::File>{programFile()} + files);
}
