// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// An empty file that one process at a time can hold. The system ends the hold when the process ends, however
// that happens; a file that is still there after a kill can be held by the next one.
class FileLock
{
public:
    enum class Result {
        Held,
        HeldByAnother,
        NoLocksHere, // the file system has none (some network drives)
        Failed       // the file can neither be made nor opened
    };

    explicit FileLock(const QString &path);
    // Calls release().
    ~FileLock();
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;

    // Does not wait. To be called once.
    Result tryHold();

    // What the system said to Failed.
    QString errorString() const { return m_error; }

    // Removes the file and ends the hold; does nothing without one.
    void release();

private:
    const QString m_path;
    QString m_error;
    qintptr m_handle = -1; // a file descriptor, on Windows a HANDLE
};
