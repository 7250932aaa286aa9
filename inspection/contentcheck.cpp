// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "inspection/contentcheck.h"

#include "helpers/self-extractor/unpacking/unpacker.h"

#include <QCryptographicHash>
#include <QMutex>
#include <QThread>

#include <utility>

namespace {

// What the sinks of all threads have in common.
struct Collected
{
    QMutex mutex;
    FileHashes *hashes = nullptr; // null: not wanted
    QStringList unfinished;       // files that have begun and not ended
};

class CheckingSink final : public sfx::UnpackSink
{
public:
    explicit CheckingSink(Collected &collected) : m_collected(collected) {}

    sfx::Status begin(std::uint64_t, std::uint32_t) override { return sfx::Status::Ok; }
    sfx::Status makeFolder(const sfx::Entry &) override { return sfx::Status::Ok; }
    sfx::Status beginFile(const sfx::Entry &file) override
    {
        m_hash.reset();
        const QMutexLocker lock(&m_collected.mutex);
        m_collected.unfinished.append(pathOf(file));
        return sfx::Status::Ok;
    }
    sfx::Status write(const std::uint8_t *data, std::size_t size) override
    {
        if (m_collected.hashes != nullptr) {
            m_hash.addData(QByteArrayView(data, static_cast<qsizetype>(size)));
        }
        return sfx::Status::Ok;
    }
    sfx::Status endFile(const sfx::Entry &file) override
    {
        const QString path = pathOf(file);
        const QMutexLocker lock(&m_collected.mutex);
        m_collected.unfinished.removeOne(path);
        if (m_collected.hashes != nullptr) {
            m_collected.hashes->insert(path, m_hash.result());
        }
        return sfx::Status::Ok;
    }
    sfx::Status finishFolder(const sfx::Entry &) override { return sfx::Status::Ok; }
    sfx::Owned<sfx::UnpackSink> another() override
    {
        return sfx::makeOwned<CheckingSink>(m_collected);
    }

private:
    Collected &m_collected;
    QCryptographicHash m_hash{QCryptographicHash::Sha256};
};

} // namespace

std::optional<Finding> checkContent(ProducedFile &file, FileHashes *hashes)
{
    Collected collected;
    collected.hashes = hashes;
    CheckingSink sink(collected);
    sfx::UnpackLimits limits;
    limits.threads = static_cast<unsigned>(QThread::idealThreadCount());
    const sfx::Status status = sfx::unpack(file.archive(), sink, file.totalBytes(), limits);
    if (status == sfx::Status::Ok) {
        return std::nullopt;
    }
    Finding finding = findingOf(status);
    if (!collected.unfinished.isEmpty()) {
        finding.text += ": " + collected.unfinished.join(", ");
    }
    return finding;
}
