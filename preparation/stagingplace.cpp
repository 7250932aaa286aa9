// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/stagingplace.h"

#include "preparation/archivermethod.h"
#include "preparation/stagedfile.h"

#include <QLocale>
#include <QTemporaryDir>

#include <algorithm>

namespace {

constexpr qint64 worthANote = 256 << 20;  // in bytes
constexpr qint64 bytesToLeave = 64 << 20; // free on the disk

QString sizeText(qint64 bytes)
{
    return QLocale::c().formattedDataSize(bytes, 1);
}

QString freeSpaceText(const QList<PlaceToStage> &places)
{
    QStringList texts;
    for (const PlaceToStage &place : places) {
        texts.append(place.path + " (" + sizeText(place.freeBytes) + ')');
    }
    return texts.join(", ");
}

} // namespace

ChosenPlace chooseStagingPlace(const SourcePlan &plan, const QList<PlaceToStage> &places)
{
    QList<PlaceToStage> sorted = places;
    sorted.removeIf([](const PlaceToStage &place) { return isArchiverPattern(place.path); });
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const PlaceToStage &left, const PlaceToStage &right) {
                         return left.canLink != right.canLink
                             ? left.canLink
                             : !left.canLink && left.freeBytes > right.freeBytes;
                     });
    const auto hasRoom = [&plan](const PlaceToStage &each) {
        const qint64 bytes = plan.bytesToCopy(each.canLink);
        return bytes == 0 || each.freeBytes - bytes >= bytesToLeave;
    };
    const auto place = std::find_if(sorted.begin(), sorted.end(), hasRoom);
    ChosenPlace chosen;
    if (place == sorted.end()) {
        const qint64 bytes = plan.bytesToCopy(!sorted.isEmpty() && sorted.constFirst().canLink);
        chosen.note = Message{"%1 have to be copied before packing, but no disk has the space: %2",
                              {sizeText(bytes), freeSpaceText(sorted)}};
        return chosen;
    }
    chosen.path = place->path;
    chosen.bytesToCopy = plan.bytesToCopy(place->canLink);
    if (chosen.bytesToCopy > worthANote) {
        const char *sentence = place->canLink
            ? "%1 are copied to %2 first, because their times or permissions have to change"
            : "%1 are copied to %2 first, because files cannot be linked from the folder's disk to "
              "another one";
        chosen.note = Message{sentence, {sizeText(chosen.bytesToCopy), chosen.path}};
    }
    return chosen;
}

PlaceToStage placeToStage(const QString &path, const SourcePlan &plan)
{
    PlaceToStage place;
    place.path = path;
    place.freeBytes = freeBytesAt(path);
    QTemporaryDir probe(path + "/.kestrelpack-tree-XXXXXX");
    for (const PlannedFile &file : plan.files) {
        if (probe.isValid() && !file.mustNotBeLinked) {
            const QString link = probe.filePath("link");
            place.canLink = linkFile(plan.folder + '/' + file.source, link);
            removeStagedFile(link, false);
            break;
        }
    }
    return place;
}
