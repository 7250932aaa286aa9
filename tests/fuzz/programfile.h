// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/resourcetree.h"

#include <filesystem>
#include <map>
#include <optional>

// A fuzzer's input as a file, in a memory file system if there is one. The destructor removes the file.
class ProgramFile
{
public:
    explicit ProgramFile(pe::ByteView content);
    ProgramFile(const ProgramFile &) = delete;
    ProgramFile &operator=(const ProgramFile &) = delete;
    ~ProgramFile();

    const pe::NativePath &path() const { return m_path.native(); }
    pe::Bytes content() const;

private:
    std::filesystem::path m_path;
};

// The parts that an edit of a program's icon must not change.
struct ProgramLooks
{
    pe::Bytes appended;                         // data after the image
    std::map<std::u16string, pe::Bytes> others; // resources that are not icons, by path
    bool hasGroup = false;                      // has an icon group
    bool isSound = false;                       // no two sections share bytes of the file

    // Returns nothing if the file cannot be read.
    static std::optional<ProgramLooks> of(const ProgramFile &file);
};
