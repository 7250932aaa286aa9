// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/filelock.h"

#include <QString>

#include <memory>

// The private directory, in the temporary one, that a job's archive goes to. A lock beside it tells the
// directories of jobs that work from those of jobs that were killed; making one removes the latter.
class ArchiveDirectory
{
public:
    ArchiveDirectory();
    // Calls remove().
    ~ArchiveDirectory();
    ArchiveDirectory(const ArchiveDirectory &) = delete;
    ArchiveDirectory &operator=(const ArchiveDirectory &) = delete;

    // False when it could not be made; errorString() then tells why.
    bool isValid() const { return !m_path.isEmpty(); }
    QString errorString() const { return m_error; }

    // Where the job's archive goes.
    QString archivePath() const { return m_path + "/temp.7z"; }

    // Removes it with all that is in it.
    void remove();

private:
    void make();
    void removeThoseOfKilledJobs() const;

    QString m_path; // empty: it is not there
    QString m_error;
    std::unique_ptr<FileLock> m_lock;
};
