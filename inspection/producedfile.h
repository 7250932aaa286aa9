// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/file.h"
#include "helpers/self-extractor/archive/archive.h"
#include "helpers/self-extractor/start/startplan.h"
#include "inspection/finding.h"

#include <QDateTime>

#include <memory>
#include <optional>

// A produced file, read with the self-extractor's own code. Use it on one thread.
class ProducedFile
{
public:
    ProducedFile();
    ProducedFile(const ProducedFile &) = delete;
    ProducedFile &operator=(const ProducedFile &) = delete;
    ~ProducedFile();

    // Opens the file for reading. Returns the system's reason if that fails, otherwise nothing.
    // Call it once, before everything else.
    QString open(const QString &path);

    // Checks what the self-extractor checks before it writes anything: image, settings,
    // configuration block, the archive's header, and every name. Nothing is decoded. Returns nothing
    // if all is well.
    std::optional<Finding> check();

    const QString &path() const { return m_path; }
    // Size of the whole file in bytes.
    quint64 size() const { return m_file.size(); }
    const pe::File &file() const { return m_file; }

    // These need a check() that has found nothing.
    const sfx::StartPlan &plan() const { return m_plan; }
    sfx::Archive &archive() { return *m_archive; }
    // Where the archive begins, in bytes from the beginning of the file.
    quint64 archiveOffset() const { return m_archiveOffset; }
    // Size of all unpacked files together, in bytes.
    quint64 totalBytes() const { return m_totalBytes; }

private:
    class Source;

    QString m_path;
    pe::File m_file;
    std::unique_ptr<Source> m_source;
    std::unique_ptr<sfx::Archive> m_archive;
    sfx::StartPlan m_plan;
    std::uint64_t m_archiveOffset = 0;
    std::uint64_t m_totalBytes = 0;
};

// Conversions from the self-extractor's types.
QString toQString(const sfx::Text &text);
QString pathOf(const sfx::Entry &entry);           // with "/" between its components
QDateTime modifiedTimeOf(const sfx::Entry &entry); // needs entry.hasModified
