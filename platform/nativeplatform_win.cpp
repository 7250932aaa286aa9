// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/nativeplatform.h"

#include "platform/trust_win.h"

#include <QProcess>

#include <windows.h>

#include <shlobj.h>

QString NativePlatform::reasonNotToUse(const QString &path)
{
    return untrustedFileReason(path);
}

void NativePlatform::prepareStart(QProcess &process)
{
    // The helpers are console programs. The program with the window has no console, so Windows
    // would open one.
    process.setCreateProcessArgumentsModifier(
        [](QProcess::CreateProcessArguments *arguments) { arguments->flags |= CREATE_NO_WINDOW; });
}

void NativePlatform::notifyAssociationsChanged()
{
    SHChangeNotify(SHCNE_ASSOCCHANGED, SHCNF_IDLIST, nullptr, nullptr);
}
