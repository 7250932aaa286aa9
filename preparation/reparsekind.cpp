// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/reparsekind.h"

namespace {

// winnt.h: attributes, and reparse tags. Bit 29 of a tag marks a name surrogate: the entry stands
// for another one.
constexpr quint32 directoryAttribute = 0x10;
constexpr quint32 reparseAttribute = 0x400;
constexpr quint32 nameSurrogate = 0x20000000;
constexpr quint32 linuxSocket = 0x80000023;
constexpr quint32 linuxPipe = 0x80000024;
constexpr quint32 linuxCharacterDevice = 0x80000025;
constexpr quint32 linuxBlockDevice = 0x80000026;

} // namespace

SourceEntry::Kind kindOfWindowsEntry(quint32 attributes, quint32 reparseTag)
{
    const bool isFolder = (attributes & directoryAttribute) != 0;
    const auto ordinary = isFolder ? SourceEntry::Kind::Folder : SourceEntry::Kind::File;
    if ((attributes & reparseAttribute) == 0) {
        return ordinary;
    }
    if ((reparseTag & nameSurrogate) != 0) {
        return SourceEntry::Kind::Link;
    }
    switch (reparseTag) {
    case linuxSocket:
        return SourceEntry::Kind::Socket;
    case linuxPipe:
        return SourceEntry::Kind::Pipe;
    case linuxCharacterDevice:
    case linuxBlockDevice:
        return SourceEntry::Kind::Device;
    default:
        return ordinary;
    }
}
