// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/status.h"
#include "tests/helpers/self-extractor/archivewriter.h"

#include <QMetaType>

Q_DECLARE_METATYPE(sfx::Status)

// When the module refuses an archive.
enum class Refused {
    BeforeWriting, // the sink has not been called
    WhileWriting,  // only decoding shows the fault
};

// The result of unpacking a forged archive.
struct HostileRun
{
    sfx::Status status = sfx::Status::Ok;
    bool hasBegun = false;      // the sink was called
    std::uint64_t written = 0;  // bytes, in all files together
    QList<QString> files;       // the complete ones
    std::size_t peakMemory = 0; // in bytes, without the archive itself
};

// Opens, checks and unpacks as the module does, for the program `main.exe`. Discards the unpacked
// data. After 64 MiB the disk is full.
HostileRun runHostile(const QByteArray &archive);

// A small `main.exe`.
forge::File programFile();
// The valid plan of an archive with the program and these files.
forge::ArchivePlan planWith(const QList<forge::File> &files);
