// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

#include <memory>
#include <optional>

// Conditions that not every system, and not every user, can bring about. Each class says whether it did.

// While it lives, this process (and what it starts) may do no more than an ordinary user, who owns the folders
// and all that is in them: root reads and writes everything.
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

// While it lives, `folder` is an empty file system of that size. Only this process sees it, and it goes with
// the process, whatever happens.
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

// While it lives, nobody else may open the file. Only Windows knows that.
class HeldFile
{
public:
    explicit HeldFile(const QString &path);

    bool isThere() const { return m_handle != nullptr; }

private:
    std::unique_ptr<void, void (*)(void *)> m_handle{nullptr, nullptr};
};

// Gives `path` to another user; false when that is not in our power.
bool giveAway(const QString &path);

// The largest amount of memory that this process held since the last call of forgetPeakOfMemory(), in
// MiB; nothing where the system does not tell, or a sanitizer needs memory of its own.
std::optional<int> peakOfMemory();
void forgetPeakOfMemory();
