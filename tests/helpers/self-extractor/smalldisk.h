// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QFile>

#include <sched.h>
#include <sys/mount.h>

// From now on this process' mounts, and those of what it starts, are its own: nothing stays
// mounted when it is killed. False: that takes root.
[[nodiscard]] inline bool keepMountsToOurselves()
{
    return unshare(CLONE_NEWNS) == 0
        && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

// A disk in memory, mounted on a folder for as long as the object lives.
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
