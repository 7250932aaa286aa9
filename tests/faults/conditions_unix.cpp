// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/faults/conditions.h"

#include "tests/support/sanitizer.h"

#include <QDirIterator>
#include <QFile>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace {

constexpr uid_t nobody = 65534;

// After the first call, no other process sees the mounts of this thread and its children.
bool hasOwnMounts()
{
    static const bool done = unshare(CLONE_NEWNS) == 0
        && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    return done;
}

void giveAllAway(const QString &folder)
{
    giveAway(folder);
    QDirIterator entries(folder,
                         QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        giveAway(entries.next());
    }
}

} // namespace

OrdinaryRights::OrdinaryRights(const QStringList &folders) : m_wereMore(geteuid() == 0)
{
    for (const QString &folder : folders) {
        if (m_wereMore) {
            giveAllAway(folder);
        }
    }
    // The real user is set too: access() checks files with the real user's rights.
    m_areThere = !m_wereMore || setresuid(nobody, nobody, 0) == 0;
}

OrdinaryRights::~OrdinaryRights()
{
    if (m_wereMore && m_areThere && setresuid(0, 0, 0) != 0) {
        qFatal("the rights do not come back");
    }
}

SmallDisk::SmallDisk(const QString &folder, int kibibytes) : m_folder(folder)
{
    const QByteArray options = "size=" + QByteArray::number(kibibytes) + "k";
    m_isThere = hasOwnMounts()
        && mount("tmpfs", QFile::encodeName(folder).constData(), "tmpfs", 0, options.constData())
            == 0;
}

SmallDisk::~SmallDisk()
{
    if (m_isThere) {
        umount2(QFile::encodeName(m_folder).constData(), MNT_DETACH);
    }
}

HeldFile::HeldFile(const QString &) {}

bool giveAway(const QString &path)
{
    return lchown(QFile::encodeName(path).constData(), nobody, static_cast<gid_t>(-1)) == 0;
}

std::optional<int> peakOfMemory()
{
    QFile status("/proc/self/status");
    if (underSanitizer || !status.open(QIODevice::ReadOnly)) {
        return {};
    }
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:")) {
            return line.mid(6).simplified().split(' ').constFirst().toInt() / 1024;
        }
    }
    return {};
}

void forgetPeakOfMemory()
{
    QFile file("/proc/self/clear_refs");
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || file.write("5") != 1) {
        qWarning("the peak of memory stays");
    }
}
