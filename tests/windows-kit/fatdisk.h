// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/windows-kit/row.h"

// A disk with the file system FAT32, which has no access lists and no files over 4 GiB.
namespace kit {

// The disk is a file in the row's folder, which grows as it is filled, and lies in a folder there.
// Only administrators can make one. It goes away with the object.
class FatDisk
{
public:
    explicit FatDisk(const Place &place);
    FatDisk(const FatDisk &) = delete;
    FatDisk &operator=(const FatDisk &) = delete;
    ~FatDisk();

    // Why there is no disk; an empty text if there is one.
    const std::string &problem() const { return m_problem; }
    std::wstring path(const std::wstring &name) const { return m_folder + L'\\' + name; }

private:
    std::string diskpart(const std::string &commands) const; // returns what it said

    std::wstring m_scratch;
    std::wstring m_image;
    std::wstring m_folder;
    std::string m_problem;
    bool m_isMade = false;
};

} // namespace kit
