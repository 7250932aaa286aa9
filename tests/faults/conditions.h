// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

#include <memory>
#include <optional>

// Conditions that some systems, or some users, cannot create. Each class says whether it succeeded.

// While the object exists, this process and its children have only an ordinary user's rights. That
// user owns the folders and everything in them. Without this, root could read and write everything.
class OrdinaryRights
{
public:
    explicit OrdinaryRights(const QStringList &folders);
    ~OrdinaryRights(); // NOLINT(performance-trivially-destructible): on one system only
    OrdinaryRights(const OrdinaryRights &) = delete;
    OrdinaryRights &operator=(const OrdinaryRights &) = delete;

    bool areThere() const { return m_areThere; }

private:
    bool m_areThere = false;
    bool m_wereMore = false;
};

// While the object exists, `folder` is an empty file system of that size. Only this process sees
// it. It disappears with the process in every case.
class SmallDisk
{
public:
    SmallDisk(const QString &folder, int kibibytes);
    ~SmallDisk();
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    bool isThere() const { return m_isThere; }

private:
    QString m_folder;
    bool m_isThere = false;
};

// While the object exists, no other process can open the file. Only Windows can do this.
class HeldFile
{
public:
    explicit HeldFile(const QString &path);

    bool isThere() const { return m_handle != nullptr; }

private:
    std::unique_ptr<void, void (*)(void *)> m_handle{nullptr, nullptr};
};

// Makes another user the owner of `path`. Returns false if this process may not do that.
bool giveAway(const QString &path);

// The largest amount of memory in MiB that this process used since the last call of
// forgetPeakOfMemory(). Returns nothing if the system does not tell, or if a sanitizer uses
// additional memory.
std::optional<int> peakOfMemory();
void forgetPeakOfMemory();
