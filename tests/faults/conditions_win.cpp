// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/faults/conditions.h"

#include <QDir>

#include <windows.h>

namespace {

void close(void *handle)
{
    CloseHandle(handle);
}

} // namespace

// On Windows no user's rights go beyond the permissions of a file.
OrdinaryRights::OrdinaryRights(const QStringList &) : m_areThere(true) {}

OrdinaryRights::~OrdinaryRights() = default;

SmallDisk::SmallDisk(const QString &, int) {}

SmallDisk::~SmallDisk() = default;

HeldFile::HeldFile(const QString &path)
{
    const std::wstring name = QDir::toNativeSeparators(path).toStdWString();
    HANDLE file = CreateFileW(name.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        m_handle = {file, close};
    }
}

bool giveAway(const QString &)
{
    return false;
}

std::optional<int> peakOfMemory()
{
    return {};
}

void forgetPeakOfMemory() {}
