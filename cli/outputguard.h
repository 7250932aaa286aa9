// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/filelock.h"

#include <QString>

// Keeps one output file, and all that lies beside it, in order around a job: the job writes into a private
// directory beside the output, and only a whole executable is moved into place. Until then an older output
// stays as it is, and after a job that failed or was killed it is still there. One job at a time can hold an
// output. Used on one thread.
class OutputGuard
{
public:
    // `output` is the absolute path of the executable to be made; its directory exists.
    explicit OutputGuard(const QString &output);
    // Calls release().
    ~OutputGuard();
    OutputGuard(const OutputGuard &) = delete;
    OutputGuard &operator=(const OutputGuard &) = delete;

    // Holds the output, removes what a killed job left there, and makes the private directory. Returns nothing
    // when that is done, otherwise one English sentence that says why not. To be called once.
    QString hold();

    // The output's path.
    QString output() const { return m_output; }

    // The private directory. The job makes there a file of the output's name.
    QString directory() const { return m_directory; }

    // The path of that file.
    QString madeFile() const;

    // Moves the made file into place; an older output is replaced. Returns what the system said when it
    // failed (the older output is then still there), and nothing when it is done.
    QString putInPlace() const;

    // Removes the private directory with all that is in it, and lets the output go.
    void release();

private:
    QString directoryName(int number) const;
    void removeThoseOfKilledJobs() const;
    QString makeDirectory();

    const QString m_output;
    const QString
        m_prefix; // of the names of the lock and of the private directory, with their path
    FileLock m_lock;
    QString m_directory; // empty: it is not there
};
