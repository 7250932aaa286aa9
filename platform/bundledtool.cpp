// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/bundledtool.h"

#include <QFile>

bool provideBundledTool(const QString &resource, const QString &target)
{
    if (QFile::exists(target)) {
        return true;
    }
    if (!QFile::copy(resource, target)) {
        return false;
    }
    // A file that was copied from the bundle is read-only.
    QFile::setPermissions(target,
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    return true;
}
