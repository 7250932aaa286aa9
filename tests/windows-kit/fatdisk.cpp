// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/fatdisk.h"

#include "tests/windows-kit/files.h"
#include "tests/windows-kit/process.h"
#include "tests/windows-kit/security.h"
#include "tests/windows-kit/text.h"

namespace kit {

namespace {

std::string fileSystemOf(const std::wstring &folder)
{
    wchar_t name[64] = L"";
    GetVolumeInformationW((folder + L'\\').c_str(), nullptr, 0, nullptr, nullptr, nullptr, name,
                          ARRAYSIZE(name));
    return utf8(name);
}

} // namespace

// More than 4 GiB must be free on it: a start that lacks space would end for another reason.
FatDisk::FatDisk(const Place &place)
    : m_scratch(place.temp)
    , m_image(place.path(L"disk.vhd"))
    , m_folder(place.path(L"disk"))
{
    if (!isElevated()) {
        m_problem
            = "only an administrator can make a disk with FAT32; a person can start a product "
              "with TEMP on a stick with FAT32";
        return;
    }
    makeFolder(m_folder);
    m_isMade = true;
    const std::string said
        = diskpart("create vdisk file=\"" + utf8(m_image)
                   + "\" maximum=6000 type=expandable\r\nselect vdisk file=\"" + utf8(m_image)
                   + "\"\r\nattach vdisk\r\n"
                     "create partition primary\r\nformat fs=fat32 quick label=KIT\r\n"
                     "assign mount=\""
                   + utf8(m_folder) + "\"\r\n");
    if (fileSystemOf(m_folder) != "FAT32") {
        m_problem = "diskpart has not made a disk with FAT32: " + said;
    }
}

FatDisk::~FatDisk()
{
    if (m_isMade) {
        DeleteVolumeMountPointW((m_folder + L'\\').c_str());
        diskpart("select vdisk file=\"" + utf8(m_image) + "\"\r\ndetach vdisk\r\n");
        RemoveDirectoryW(m_folder.c_str());
        DeleteFileW(m_image.c_str());
    }
}

std::string FatDisk::diskpart(const std::string &commands) const
{
    const std::wstring script = m_scratch + L"\\diskpart.txt";
    writeFile(script, commands);
    const Ended ended
        = run(Start(systemProgram(L"diskpart.exe"), L"/s \"" + script + L"\""), m_scratch);
    return ended.text();
}

} // namespace kit
