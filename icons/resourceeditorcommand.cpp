// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "icons/resourceeditorcommand.h"

QStringList deleteIconsArguments(const QString &executable)
{
    return {"-open",  executable, "-save",      executable, "-action",
            "delete", "-mask",    "ICONGROUP,", "-log",     "NUL"};
}

QStringList addIconArguments(const QString &executable, const QString &icon)
{
    return {"-open",        executable,  "-save", executable, "-action",
            "addoverwrite", "-resource", icon,    "-mask",    "ICONGROUP,MAINICON,",
            "-log",         "NUL"};
}
