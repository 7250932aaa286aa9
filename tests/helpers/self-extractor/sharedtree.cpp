// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/sharedtree.h"

#include "helpers/self-extractor/archive/contents.h"

using namespace sfx;

class SharedTree::Sink final : public UnpackSink
{
public:
    explicit Sink(SharedTree &shared) : m_shared(shared) { ++m_shared.m_sinks; }

    Status begin(std::uint64_t, std::uint32_t) override { return Status::Ok; }
    Status makeFolder(const Entry &) override { return Status::Ok; }
    Status beginFile(const Entry &file) override
    {
        const QMutexLocker lock(&m_shared.m_mutex);
        m_shared.expect(m_path.isNull() && !m_shared.m_isFinishing,
                        "one file at a time, and none after the folders");
        m_path = pathOf(file);
        m_shared.expect(!m_shared.m_begun.contains(m_path), "no file is begun twice");
        m_shared.m_begun.insert(m_path);
        m_content = QByteArray("");
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
        m_shared.expect(!m_path.isNull(), "only an open file is written");
        m_content.append(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
        return Status::Ok;
    }
    Status endFile(const Entry &file) override
    {
        const QMutexLocker lock(&m_shared.m_mutex);
        m_shared.expect(m_path == pathOf(file), "the file that ends is the open one");
        m_shared.expect(static_cast<std::uint64_t>(m_content.size()) == file.size,
                        "a file has its size when it ends");
        m_shared.m_done.insert(m_path, m_content);
        m_path = QString();
        return Status::Ok;
    }
    Status finishFolder(const Entry &folder) override
    {
        const QMutexLocker lock(&m_shared.m_mutex);
        m_shared.expect(m_path.isNull(), "folders are finished when all files are");
        m_shared.m_isFinishing = true;
        m_shared.m_done.insert(pathOf(folder) + u'/', QByteArray());
        return Status::Ok;
    }
    Owned<UnpackSink> another() override { return makeOwned<Sink>(m_shared); }

private:
    SharedTree &m_shared;
    QString m_path; // path of the open file; null: no file is open
    QByteArray m_content;
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
