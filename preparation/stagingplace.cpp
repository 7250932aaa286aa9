// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/stagingplace.h"

#include "preparation/stagedfile.h"

#include <QLocale>
#include <QStorageInfo>
#include <QTemporaryDir>

#include <algorithm>

namespace {

constexpr qint64 worthANote = 256 << 20;  // in bytes
constexpr qint64 bytesToLeave = 64 << 20; // free on the disk

// Returns true if the archiver would read the path as a pattern.
bool isPattern(const QString &path)
{
    return path.contains('*') || path.contains('?');
}

QString sizeText(qint64 bytes)
{
    return QLocale::c().formattedDataSize(bytes, 1);
}

} // namespace

ChosenPlace chooseStagingPlace(const SourcePlan &plan, const QList<PlaceToStage> &places)
{
    QList<PlaceToStage> sorted = places;
    sorted.removeIf([](const PlaceToStage &place) { return isPattern(place.path); });
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
        QStringList free;
        for (const PlaceToStage &each : sorted) {
            free.append(QStringLiteral("%1 has %2").arg(each.path, sizeText(each.freeBytes)));
        }
        chosen.note = QStringLiteral("there is no space to copy the folder, which needs %1: %2")
                          .arg(sizeText(plan.bytesToCopy(false)), free.join(", "));
        return chosen;
    }
    chosen.path = place->path;
    chosen.bytesToCopy = plan.bytesToCopy(place->canLink);
    if (chosen.bytesToCopy > worthANote) {
        chosen.note = place->canLink
            ? QStringLiteral("%1 are copied to %2 first, because their times or permissions have "
                             "to change")
            : QStringLiteral("%1 are copied to %2 first, because files cannot be linked from the "
                             "folder's disk to another one");
        chosen.note = chosen.note.arg(sizeText(chosen.bytesToCopy), chosen.path);
    }
    return chosen;
}

PlaceToStage placeToStage(const QString &path, const SourcePlan &plan)
{
    PlaceToStage place;
    place.path = path;
    place.freeBytes = QStorageInfo(path).bytesAvailable();
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
