// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/status.h"
#include "tests/helpers/self-extractor/archivewriter.h"

#include <QMetaType>

Q_DECLARE_METATYPE(sfx::Status)

// When an archive is refused.
enum class Refused {
    BeforeWriting, // the sink has not been called
    WhileWriting,  // only decoding shows what is wrong
};

// What became of an archive that somebody made up.
struct HostileRun
{
    sfx::Status status = sfx::Status::Ok;
    bool hasBegun = false;      // the sink was called
    std::uint64_t written = 0;  // bytes, to all files
    QList<QString> files;       // that were complete
    std::size_t peakMemory = 0; // in bytes, the archive itself left out
};

// Opens, checks and unpacks as the module does, for the program `main.exe`; what is unpacked is
// thrown away, and after 64 MiB the disk is full.
HostileRun runHostile(const QByteArray &archive);

// `main.exe`, small.
forge::File programFile();
// The honest plan of an archive with the program and these.
forge::ArchivePlan planWith(const QList<forge::File> &files);
