// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/sharedtree.h"

using namespace sfx;

namespace {

QString pathOf(const Entry &entry)
{
    return QString::fromUtf16(entry.path, static_cast<qsizetype>(entry.pathSize));
}

} // namespace

class SharedTree::Sink final : public UnpackSink
{
public:
    explicit Sink(SharedTree &shared) : m_shared(shared) { ++m_shared.m_sinks; }

    Status begin(std::uint64_t, std::uint32_t) override { return Status::Ok; }
    Status makeFolder(const Entry &) override { return Status::Ok; }
    Status beginFile(const Entry &file) override
    {
        const QMutexLocker lock(&m_shared.m_mutex);
        const QString path = pathOf(file);
        m_shared.expect(m_path.isNull(), "one file at a time");
        m_shared.expect(!m_shared.m_open.contains(path) && !m_shared.m_done.contains(path),
                        "no file is begun twice");
        m_path = path;
        m_place = 0;
        m_shared.m_open.insert(path, QByteArray(static_cast<qsizetype>(file.size), '?'));
        return Status::Ok;
    }
    Status write(const std::uint8_t *data, std::size_t size) override
    {
        const QMutexLocker lock(&m_shared.m_mutex);
        ++m_shared.m_writes;
        if (m_shared.m_writesLeft == 0) {
            return Status::DiskFull;
        }
        --m_shared.m_writesLeft;
        m_shared.expect(m_shared.m_open.contains(m_path), "only open files are written");
        QByteArray &content = m_shared.m_open[m_path];
        m_shared.expect(m_place + static_cast<qsizetype>(size) <= content.size(),
                        "nothing is written behind the end");
        content.replace(m_place, static_cast<qsizetype>(size), reinterpret_cast<const char *>(data),
                        static_cast<qsizetype>(size));
        m_place += static_cast<qsizetype>(size);
        return Status::Ok;
    }
    Status endFile(const Entry &file) override
    {
        const QMutexLocker lock(&m_shared.m_mutex);
        m_shared.expect(m_path == pathOf(file), "the file that ends is the open one");
        m_shared.expect(static_cast<std::uint64_t>(m_place) == file.size, "a file ends at its end");
        m_shared.m_done.insert(m_path, m_shared.m_open.take(m_path));
        m_path = QString();
        return Status::Ok;
    }
    Status finishFolder(const Entry &folder) override
    {
        const QMutexLocker lock(&m_shared.m_mutex);
        m_shared.expect(m_shared.m_open.isEmpty(), "folders are finished when all files are");
        m_shared.m_done.insert(pathOf(folder) + u'/', QByteArray());
        return Status::Ok;
    }
    Owned<UnpackSink> another() override { return makeOwned<Sink>(m_shared); }
    Status pauseFile() override
    {
        const QMutexLocker lock(&m_shared.m_mutex);
        m_shared.expect(!m_path.isNull(), "an open file is left");
        m_path = QString();
        return Status::Ok;
    }
    Status resumeFile(const Entry &file, std::uint64_t offset) override
    {
        const QMutexLocker lock(&m_shared.m_mutex);
        m_shared.expect(m_path.isNull() && m_shared.m_open.contains(pathOf(file)),
                        "a file that has been begun is gone on with");
        m_path = pathOf(file);
        m_place = static_cast<qsizetype>(offset);
        return Status::Ok;
    }

private:
    SharedTree &m_shared;
    QString m_path;
    qsizetype m_place = 0;
};

Owned<UnpackSink> SharedTree::sink()
{
    return makeOwned<Sink>(*this);
}

void SharedTree::expect(bool isRight, const char *rule)
{
    if (!isRight && m_mistake.isEmpty()) {
        m_mistake = QString::fromLatin1(rule);
    }
}

Status unpackShared(const QByteArray &bytes, SharedTree &tree, const UnpackLimits &limits)
{
    MemorySource source(bytes);
    Archive archive(source);
    Text program;
    std::uint64_t totalBytes = 0;
    if (!program.append(u"main.exe", 8)) {
        return Status::NoMemory;
    }
    Status status = archive.open(0);
    if (status == Status::Ok) {
        status = checkContents(archive, program, upperCase, totalBytes);
    }
    const Owned<UnpackSink> sink = tree.sink();
    return status == Status::Ok ? unpack(archive, *sink, totalBytes, limits) : status;
}
