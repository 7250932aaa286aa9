// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/nativeplatform.h"

#include "platform/iconpixels_win.h"

#include <QProcess>

#include <windows.h>

#include <shlobj.h>

ExtractedIcon NativePlatform::extractIcon(const QString &executable)
{
    return iconPixelsOf(executable);
}

// %TEMP% belongs to its user alone, so files in it are the user's.
QString NativePlatform::reasonNotToUse(const QString &)
{
    return {};
}

void NativePlatform::prepareStart(QProcess &process)
{
    // The helpers are console programs; the window's program has no console to lend them.
    process.setCreateProcessArgumentsModifier(
        [](QProcess::CreateProcessArguments *arguments) { arguments->flags |= CREATE_NO_WINDOW; });
}

void NativePlatform::notifyAssociationsChanged()
{
    SHChangeNotify(SHCNE_ASSOCCHANGED, SHCNF_IDLIST, nullptr, nullptr);
}
