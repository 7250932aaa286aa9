// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "inspection/extraction.h"

#include "helpers/self-extractor/unpacking/unpacker.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace {

constexpr std::uint32_t readOnly = 0x1; // FILE_ATTRIBUTE_READONLY

// Writes into an existing folder that nobody else uses. All names have been checked.
class FolderSink final : public sfx::UnpackSink
{
public:
    FolderSink(const QString &folder, const std::function<bool()> &isStopped)
        : m_folder(folder)
        , m_isStopped(isStopped)
    {
    }

    // What could not be written, with the reason; empty if everything could.
    const QString &failure() const { return m_failure; }
    // Files that have yet to be made read-only. Until everything is complete they must be removable,
    // which read-only files on Windows are not.
    const QStringList &readOnlyFiles() const { return m_readOnlyFiles; }

    sfx::Status begin(std::uint64_t, std::uint32_t) override { return sfx::Status::Ok; }
    sfx::Status makeFolder(const sfx::Entry &folder) override
    {
        return QDir(m_folder).mkpath(pathOf(folder)) ? sfx::Status::Ok
                                                     : fail(pathOf(folder), QString());
    }
    sfx::Status beginFile(const sfx::Entry &file) override
    {
        const QString path = pathOf(file);
        m_file.setFileName(m_folder + '/' + path);
        if (!QDir().mkpath(QFileInfo(m_file.fileName()).path())
            || !m_file.open(QIODevice::WriteOnly)) {
            return fail(path, m_file.errorString());
        }
        return sfx::Status::Ok;
    }
    sfx::Status write(const std::uint8_t *data, std::size_t size) override
    {
        if (m_isStopped()) {
            return fail(QDir(m_folder).relativeFilePath(m_file.fileName()), QString());
        }
        const auto bytes = static_cast<qint64>(size);
        return m_file.write(reinterpret_cast<const char *>(data), bytes) == bytes
            ? sfx::Status::Ok
            : fail(QDir(m_folder).relativeFilePath(m_file.fileName()), m_file.errorString());
    }
    sfx::Status endFile(const sfx::Entry &file) override
    {
        if (!m_file.flush()) {
            return fail(pathOf(file), m_file.errorString());
        }
        if (file.hasModified) {
            m_file.setFileTime(modifiedTimeOf(file), QFileDevice::FileModificationTime);
        }
        m_file.close();
        if ((file.attributes & readOnly) != 0) {
            m_readOnlyFiles.append(pathOf(file));
        }
        return sfx::Status::Ok;
    }
    sfx::Status finishFolder(const sfx::Entry &) override { return sfx::Status::Ok; }

private:
    sfx::Status fail(const QString &path, const QString &reason)
    {
        m_failure = reason.isEmpty() ? path : path + ": " + reason;
        return sfx::Status::WriteFailed;
    }

    const QString m_folder;
    const std::function<bool()> &m_isStopped;
    QFile m_file;
    QString m_failure;
    QStringList m_readOnlyFiles;
};

void makeReadOnly(const QString &path)
{
    QFile::setPermissions(path,
                          QFile::permissions(path)
                              & ~(QFile::WriteOwner | QFile::WriteUser | QFile::WriteGroup
                                  | QFile::WriteOther));
}

Finding cannotWrite(const QString &what)
{
    Finding finding = findingOf(sfx::Status::WriteFailed);
    finding.text += ": " + what;
    return finding;
}

} // namespace

ExtractionObstacle obstacleAt(const QString &folder)
{
    const QFileInfo info(folder);
    if (info.isSymLink() || (info.exists() && !info.isDir())) {
        return ExtractionObstacle::NotAFolder;
    }
    if (info.isDir()
        && !QDir(folder).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System
                                 | QDir::NoDotAndDotDot)) {
        return ExtractionObstacle::NotEmpty;
    }
    return ExtractionObstacle::None;
}

std::optional<Finding> extractInto(ProducedFile &file, const QString &folder,
                                   const std::function<bool()> &isStopped)
{
    const QString target = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    const QString parent = QFileInfo(target).path();
    if (!QDir().mkpath(parent)) {
        return cannotWrite(parent);
    }
    QTemporaryDir temporary(parent + "/.kestrelpack-XXXXXX");
    const QString content = temporary.filePath("content");
    if (!temporary.isValid() || !QDir().mkdir(content)) {
        return cannotWrite(parent + ": " + temporary.errorString());
    }
    FolderSink sink(content, isStopped);
    const sfx::Status status = sfx::unpack(file.archive(), sink, file.totalBytes());
    if (status != sfx::Status::Ok) {
        return sink.failure().isEmpty() ? findingOf(status) : cannotWrite(sink.failure());
    }
    // Removes only an empty folder. Renaming fails if there is another one meanwhile.
    QDir().rmdir(target);
    if (!QDir().rename(content, target)) {
        return cannotWrite(target);
    }
    for (const QString &path : sink.readOnlyFiles()) {
        makeReadOnly(target + '/' + path);
    }
    return std::nullopt;
}
