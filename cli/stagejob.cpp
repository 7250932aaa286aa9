// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/stagejob.h"

#include "cli/language.h"
#include "preparation/stagedtree.h"
#include "preparation/stagingplace.h"

std::optional<Refusal> stageJob(PreparedJob &prepared, const QStringList &places,
                                const std::function<bool()> &isStopped)
{
    const SourcePlan &plan = prepared.tree;
    if (!plan.needsStaging) {
        return std::nullopt;
    }
    QList<PlaceToStage> possible;
    for (const QString &path : places) {
        possible.append(placeToStage(path, plan));
    }
    const ChosenPlace place = chooseStagingPlace(plan, possible);
    if (place.path.isEmpty()) {
        return Refusal{text(place.note.value_or(Message()))};
    }
    if (place.note) {
        prepared.remarks.append(text(*place.note));
    }
    StagedTree tree(place.path);
    if (const auto error = tree.create(plan, [&isStopped](qint64) { return !isStopped(); })) {
        return Refusal{text(*error)};
    }
    prepared.job.folderPath = tree.path();
    tree.leave();
    return std::nullopt;
}
