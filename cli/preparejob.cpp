// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/preparejob.h"

#include "cli/language.h"
#include "packaging/compressionoptions.h"
#include "packaging/outputname.h"
#include "preparation/archivermethod.h"
#include "preparation/folderlisting.h"

#include <QFileInfo>

namespace {

QStringList textsOf(const QList<Message> &messages)
{
    QStringList texts;
    for (const Message &message : messages) {
        texts.append(text(message));
    }
    return texts;
}

// Files with unusual permissions are copied, so that the archive does not depend on this user's umask.
std::variant<SourcePlan, Refusal> planOf(const PackOptions &options, const CheckedInputs &inputs,
                                         const std::function<bool()> &isStopped)
{
    const auto times = timeRuleOf(options.latestTime, qEnvironmentVariable("SOURCE_DATE_EPOCH"),
                                  options.reproducible);
    if (const auto *message = std::get_if<Message>(&times)) {
        return Refusal{text(*message)};
    }
    const SourceListing listing = listFolder(inputs.folder, isStopped);
    if (!listing.error.isEmpty()) {
        return Refusal{
            text("the folder %1 cannot be listed: %2").arg(inputs.folder, listing.error)};
    }
    TreeOptions wanted;
    wanted.excludes = options.excludes;
    wanted.mainProgram = inputs.mainProgram;
    wanted.times = std::get<TimeRule>(times);
    if (options.reproducible) {
        wanted.permissions = TreeOptions::Permissions::Uniform;
    }
    auto plan = planTree(inputs.folder, listing.entries, wanted);
    if (const auto *problems = std::get_if<TreeProblems>(&plan)) {
        return Refusal{textsOf(problems->messages).join('\n')};
    }
    return std::get<SourcePlan>(plan);
}

} // namespace

QString PreparedJob::madeName() const
{
    return outputBaseName(job.mainExeName) + ".exe";
}

std::variant<PreparedJob, Refusal> prepareJob(const PackOptions &options,
                                              const std::function<bool()> &isStopped)
{
    const auto checked = checkInputs(options);
    if (const auto *refusal = std::get_if<Refusal>(&checked)) {
        return *refusal;
    }
    const CheckedInputs &inputs = *std::get_if<CheckedInputs>(&checked);
    const auto plan = planOf(options, inputs, isStopped);
    if (const auto *refusal = std::get_if<Refusal>(&plan)) {
        return *refusal;
    }

    PreparedJob prepared;
    prepared.options = options;
    prepared.product = inputs.product;
    prepared.tree = std::get<SourcePlan>(plan);
    prepared.warnings = textsOf(prepared.tree.warnings);
    prepared.job.folderPath = inputs.folder;
    prepared.job.outputDir = QFileInfo(inputs.product).path();
    prepared.job.mainExeName = prepared.tree.mainProgram;
    prepared.job.iconPath = inputs.icon;
    prepared.job.compressionLevel = compressionLevelText(options.levelIndex);
    prepared.job.compressionMethod = options.profile == Profile::FastStart
        ? fastArchiverMethod()
        : archiverMethod(prepared.job.compressionLevel, compressionMethodText(options.methodIndex));
    prepared.job.dictionarySize = dictionarySizeText(-1);
    return prepared;
}
