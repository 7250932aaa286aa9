// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "preparation/sourcetree.h"

#include <QList>
#include <QString>

#include <optional>

// A folder that a staged tree may be made in.
struct PlaceToStage
{
    QString path;
    bool canLink = false; // to the files of the source
    qint64 freeBytes = 0;
};

struct ChosenPlace
{
    QString path;                // empty if no place is good enough; `note` then says why
    qint64 bytesToCopy = 0;      // into it
    std::optional<Message> note; // for the user
};

// Chooses the place. The first one where hard links are possible is best. Without one, it is the
// place with the most free space. Places with a * or ? in their path are left out, because the
// archiver takes them for patterns. The note tells the user if more than 256 MiB have to be copied.
ChosenPlace chooseStagingPlace(const SourcePlan &plan, const QList<PlaceToStage> &places);

// Asks the system about a folder; tries a link to one of the plan's files there.
PlaceToStage placeToStage(const QString &path, const SourcePlan &plan);
