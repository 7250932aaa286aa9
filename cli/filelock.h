// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// A lock: an empty file that only one process at a time can hold. When a process ends in any way,
// the system releases its lock. If the file remains after a kill, the next process can hold it.
class FileLock
{
public:
    enum class Result {
        Held,
        HeldByAnother,
        NoLocksHere, // the file system has no locks (some network drives)
        Failed       // the file can be neither created nor opened
    };

    explicit FileLock(const QString &path);
    // Calls release().
    ~FileLock();
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;

    // Tries to hold the file; does not wait. Call it once.
    Result tryHold();

    // The system's error message after Failed.
    QString errorString() const { return m_error; }

    // Removes the file and releases the lock. Does nothing if this object does not hold it.
    void release();

private:
    const QString m_path;
    QString m_error;
    qintptr m_handle = -1; // a file descriptor, on Windows a HANDLE
};
