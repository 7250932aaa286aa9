// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/terminal.h"

#include <QByteArray>

#include <windows.h>

namespace {

HANDLE handleOf(Stream stream)
{
    return GetStdHandle(stream == Stream::Output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

} // namespace

// Nothing to do: on Windows a missing stream has no handle, and no other file can get its place.
// Writing to it fails without harm.
void prepareTerminal() {}

bool isTerminal(Stream stream)
{
    DWORD mode = 0;
    return GetConsoleMode(handleOf(stream), &mode) != 0;
}

// A console gets UTF-16, which does not depend on its code page; files and pipes get UTF-8.
void writeText(Stream stream, const QString &text)
{
    DWORD written = 0;
    if (isTerminal(stream)) {
        WriteConsoleW(handleOf(stream), text.utf16(), static_cast<DWORD>(text.size()), &written,
                      nullptr);
        return;
    }
    const QByteArray bytes = text.toUtf8();
    WriteFile(handleOf(stream), bytes.constData(), static_cast<DWORD>(bytes.size()), &written,
              nullptr);
}
