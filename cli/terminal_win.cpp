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

// A stream that the caller did not give has no handle here, and no other file can be taken for it: writing to it
// fails, and is of no further consequence.
void prepareTerminal() {}

bool isTerminal(Stream stream)
{
    DWORD mode = 0;
    return GetConsoleMode(handleOf(stream), &mode) != 0;
}

// A console takes UTF-16 whatever its code page; files and pipes get UTF-8.
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
