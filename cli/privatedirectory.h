// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/filelock.h"

#include <QString>

#include <memory>

// A private directory for one job, inside the user's temporary directory. The engine keeps its
// helpers, its archive and its icon in the temporary directory, under fixed names; in a
// private one, a job never meets another job's files, or helpers that somebody has left there.
//
// The lock file beside the directory shows whether the job still runs. Creating such a directory
// removes those of killed jobs.
class PrivateDirectory
{
public:
    PrivateDirectory();
    // Calls remove().
    ~PrivateDirectory();
    PrivateDirectory(const PrivateDirectory &) = delete;
    PrivateDirectory &operator=(const PrivateDirectory &) = delete;

    // Returns false if the directory could not be created; errorString() then gives the reason.
    bool isValid() const { return !m_path.isEmpty(); }
    QString errorString() const { return m_error; }

    QString path() const { return m_path; }
    // The path of the job's archive.
    QString archivePath() const { return m_path + "/temp.7z"; }

    // Makes it the temporary directory of this process and of the helpers. Call it before another
    // thread exists. Returns false if the system takes another directory all the same.
    bool enter();

    // Removes the directory and everything in it. Tries again for three seconds if something is in use;
    // what is left then is removed by a later job.
    void remove();

private:
    void make();
    void removeThoseOfKilledJobs() const;

    QString m_path; // empty if the directory does not exist
    QString m_error;
    std::unique_ptr<FileLock> m_lock;
};
