// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/preparedmodule.h"

#include "helpers/pe/programedit.h"
#include "tests/helpers/pe/nativepathof.h"
#include "tests/support/testfiles.h"

#include <QTemporaryDir>

QByteArray preparedModule(const QByteArray &module, const QByteArray &settings, bool forConsole)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("module.sfx"));
    pe::ProgramEdit edit;
    edit.resources.push_back({pe::ResourceKey{std::nullopt, 10}, pe::ResourceKey{u"SETTINGS", 0}, 0,
                              pe::Bytes(settings.begin(), settings.end())});
    if (forConsole) {
        edit.subsystem = 3; // IMAGE_SUBSYSTEM_WINDOWS_CUI
    }
    if (!writeFile(file, module)
        || pe::editProgram(nativePathOf(file), nativePathOf(file), edit).hasError()) {
        return QByteArray();
    }
    return contentOf(file);
}
