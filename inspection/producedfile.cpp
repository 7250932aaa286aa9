// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "inspection/producedfile.h"

#include "helpers/self-extractor/archive/contents.h"
#include "platform/filenamecase.h"
#include "platform/nativepath.h"

class ProducedFile::Source final : public sfx::ByteSource
{
public:
    explicit Source(const pe::File &file) : m_file(file) {}
    bool readAt(std::uint64_t offset, void *data, std::size_t size) override
    {
        return !m_file.readAt(offset, {static_cast<std::uint8_t *>(data), size}).hasError();
    }
    std::uint64_t size() const override { return m_file.size(); }

private:
    const pe::File &m_file;
};

ProducedFile::ProducedFile() = default;
ProducedFile::~ProducedFile() = default;

QString ProducedFile::open(const QString &path)
{
    m_path = path;
    auto opened = pe::File::open(toNativePath(path), pe::File::Access::Read);
    if (opened.hasError()) {
        const pe::Error &error = opened.error();
        return QString::fromStdString(error.system.empty() ? error.what : error.system);
    }
    m_file = std::move(opened.value());
    m_source = std::make_unique<Source>(m_file);
    m_archive = std::make_unique<sfx::Archive>(*m_source);
    return {};
}

std::optional<Finding> ProducedFile::check()
{
    sfx::Status status = sfx::readStartPlan(*m_source, m_plan, m_archiveOffset);
    if (status == sfx::Status::Ok) {
        status = m_archive->open(m_archiveOffset);
    }
    if (status == sfx::Status::Ok) {
        status
            = sfx::checkContents(*m_archive, m_plan.program(), toFileNameUpperCase, m_totalBytes);
    }
    if (status == sfx::Status::Ok) {
        return std::nullopt;
    }
    Finding finding = findingOf(status);
    if (status == sfx::Status::ProgramMissing) {
        finding.text += ": " + toQString(m_plan.program());
    }
    return finding;
}

QString toQString(const sfx::Text &text)
{
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

QString pathOf(const sfx::Entry &entry)
{
    return QString::fromUtf16(entry.path, static_cast<qsizetype>(entry.pathSize));
}

QDateTime modifiedTimeOf(const sfx::Entry &entry)
{
    // FILETIME counts 100 ns since 1601, Qt counts milliseconds since 1970.
    constexpr qint64 millisecondsTo1970 = 11644473600000;
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(entry.modified / 10000)
                                              - millisecondsTo1970,
                                          Qt::UTC);
}
