// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/filelock.h"

#include <QString>

// Protects one output file, and the files beside it, during a job. The job writes into a private
// directory beside the output, and only a complete executable is moved into place. Until then an
// older output does not change, and it is still there if the job fails or is killed. Only one job
// at a time can hold an output. Use it on one thread only.
class OutputGuard
{
public:
    // `output` is the absolute path of the executable that the job makes. Its directory must exist.
    // The job gives its file the name `madeName`.
    OutputGuard(const QString &output, const QString &madeName);
    // Calls release().
    ~OutputGuard();
    OutputGuard(const OutputGuard &) = delete;
    OutputGuard &operator=(const OutputGuard &) = delete;

    // Locks the output, removes the files that a killed job has left there, and creates the private
    // directory. Returns an empty text, or on failure one sentence with the reason. Call it
    // once.
    QString hold();

    // The output's path.
    QString output() const { return m_output; }

    // The private directory, in which the job creates its file.
    QString directory() const { return m_directory; }

    // The path of that file.
    QString madeFile() const;

    // Moves the made file to the output's path and replaces an older output. Returns an empty text,
    // or on failure the system's error message; the older output is then still there.
    QString putInPlace() const;

    // Removes the private directory and everything in it, and unlocks the output.
    void release();

private:
    QString directoryName(int number) const;
    void removeThoseOfKilledJobs() const;
    QString makeDirectory();

    const QString m_output;
    const QString m_madeName;
    const QString m_prefix; // the paths of the lock and of the private directory begin with it
    FileLock m_lock;
    QString m_directory; // empty if the directory does not exist
};
