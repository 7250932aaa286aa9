// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/preparejob.h"

#include "packaging/compressionoptions.h"

#include <QFileInfo>

QString PreparedJob::madeName() const
{
    return QFileInfo(job.outputPath()).fileName();
}

std::variant<PreparedJob, Refusal> prepareJob(const PackOptions &options)
{
    const auto checked = checkInputs(options);
    if (const auto *refusal = std::get_if<Refusal>(&checked)) {
        return *refusal;
    }
    const CheckedInputs &inputs = *std::get_if<CheckedInputs>(&checked);

    PreparedJob prepared;
    prepared.options = options;
    prepared.product = inputs.product;
    prepared.job.folderPath = inputs.folder;
    prepared.job.outputDir = QFileInfo(inputs.product).path();
    prepared.job.mainExeName = inputs.mainProgram;
    prepared.job.iconPath = inputs.icon;
    prepared.job.compressionLevel = compressionLevelText(options.levelIndex);
    // With a method, the archiver compresses at every level.
    prepared.job.compressionMethod = options.levelIndex == 0
        ? QStringLiteral("Copy")
        : compressionMethodText(options.methodIndex);
    prepared.job.dictionarySize = dictionarySizeText(-1);
    return prepared;
}
