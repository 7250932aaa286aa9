// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "preparation/sourceentry.h"

// What Windows' attributes and reparse tag (0 without one) of an entry say about its kind.
// Junctions and symbolic links are links. Cloud drives, disks with deduplication and compressed
// system files set a tag on ordinary files and folders. The Linux subsystem uses tags for pipes,
// sockets and devices.
SourceEntry::Kind kindOfWindowsEntry(quint32 attributes, quint32 reparseTag);
