// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QFile>

#include <sched.h>
#include <sys/mount.h>

// After this call, only this process and its children see their mounts, so no mount remains if the
// process is killed. Returns false if the process is not root.
[[nodiscard]] inline bool keepMountsToOurselves()
{
    return unshare(CLONE_NEWNS) == 0
        && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

// A disk in memory. It is mounted on a folder until the object is destroyed.
class SmallDisk
{
public:
    // `options` are those of tmpfs: "size=4m", "nr_inodes=3".
    SmallDisk(const QString &folder, const char *options)
        : m_folder(QFile::encodeName(folder))
        , m_isMounted(mount("none", m_folder.constData(), "tmpfs", 0, options) == 0)
    {
    }
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;
    ~SmallDisk()
    {
        if (m_isMounted) {
            umount2(m_folder.constData(), MNT_DETACH);
        }
    }
    bool isMounted() const { return m_isMounted; }

private:
    QByteArray m_folder;
    bool m_isMounted;
};
