// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/trust_unix.h"

#include <QFile>
#include <QFileInfo>

#include <array>
#include <cstring>

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

namespace {

constexpr uid_t root = 0;

// If an entry cannot be read, the group counts as one with other members.
bool isUsersOwnGroup(gid_t id, uid_t user)
{
    std::array<char, 16384> userText{};
    std::array<char, 16384> groupText{};
    passwd userEntry = {};
    struct group groupEntry = {};
    passwd *foundUser = nullptr;
    struct group *foundGroup = nullptr;
    getpwuid_r(user, &userEntry, userText.data(), userText.size(), &foundUser);
    getgrgid_r(id, &groupEntry, groupText.data(), groupText.size(), &foundGroup);
    if (!foundUser || !foundGroup || std::strcmp(foundGroup->gr_name, foundUser->pw_name) != 0) {
        return false;
    }
    for (char **member = foundGroup->gr_mem; *member; ++member) {
        if (std::strcmp(*member, foundUser->pw_name) != 0) {
            return false;
        }
    }
    return true;
}

} // namespace

bool othersMayWrite(const struct stat &directory, uid_t user)
{
    if ((directory.st_uid != user && directory.st_uid != root) || (directory.st_mode & S_IWOTH)) {
        return true;
    }
    return (directory.st_mode & S_IWGRP) && !isUsersOwnGroup(directory.st_gid, user);
}

// The helpers have fixed names, so in a directory like /tmp anybody could create a program with
// such a name.
QString untrustedFileReason(const QString &path)
{
    const uid_t user = geteuid();
    struct stat directory = {};
    const QByteArray folder = QFile::encodeName(QFileInfo(path).absolutePath());
    if (stat(folder.constData(), &directory) != 0 || !othersMayWrite(directory, user)) {
        return {};
    }
    const auto isAnothers = [user](const struct stat &status) {
        return status.st_uid != user && status.st_uid != root;
    };
    const QByteArray name = QFile::encodeName(path);
    struct stat itself = {}; // of the link, if the file is a link
    struct stat target = {};
    if (lstat(name.constData(), &itself) == 0 && isAnothers(itself)) {
        return QStringLiteral("%1 belongs to another user").arg(path);
    }
    if (stat(name.constData(), &target) == 0 && isAnothers(target)) {
        return QStringLiteral("%1 is a link to a file of another user").arg(path);
    }
    return {};
}
