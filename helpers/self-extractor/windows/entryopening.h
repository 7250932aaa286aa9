// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/windows/entryhandle.h"

#include <winternl.h>

namespace sfx {

// How files and folders are opened by their names in an open folder. For the functions of
// entryhandle.h only.

constexpr ULONG shareContent = FILE_SHARE_READ | FILE_SHARE_WRITE;
constexpr ULONG neverFollow = FILE_SYNCHRONOUS_IO_NONALERT | FILE_OPEN_REPARSE_POINT;

struct EntryName
{
    HANDLE folder; // null: `text` is a path of the system itself (`\??\C:\...`)
    const char16_t *text;
    std::size_t size;
};

struct Way
{
    ACCESS_MASK access;
    ULONG sharing;
    ULONG disposition;
    ULONG options;
};

NTSTATUS openByName(const EntryName &name, const Way &way, void *security, Handle &opened);

// What such a status means. `kind`: the attributes that tell whether it is a folder or a link. What is
// of another kind is closed (NotForUs).
EntryUse checkedUse(NTSTATUS status, Handle &opened, DWORD kind);

} // namespace sfx
