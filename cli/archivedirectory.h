// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/filelock.h"

#include <QString>

#include <memory>

// A private directory for a job's archive, inside the temporary directory. The lock file beside it
// shows whether the job still runs. Creating such a directory removes those of killed jobs.
class ArchiveDirectory
{
public:
    ArchiveDirectory();
    // Calls remove().
    ~ArchiveDirectory();
    ArchiveDirectory(const ArchiveDirectory &) = delete;
    ArchiveDirectory &operator=(const ArchiveDirectory &) = delete;

    // Returns false if the directory could not be created; errorString() then gives the reason.
    bool isValid() const { return !m_path.isEmpty(); }
    QString errorString() const { return m_error; }

    // The path of the job's archive.
    QString archivePath() const { return m_path + "/temp.7z"; }

    // Removes the directory and everything in it.
    void remove();

private:
    void make();
    void removeThoseOfKilledJobs() const;

    QString m_path; // empty if the directory does not exist
    QString m_error;
    std::unique_ptr<FileLock> m_lock;
};
